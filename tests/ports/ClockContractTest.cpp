// What every clock promises.

#include <chrono>

#include "linux/process/SystemClock.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

/// A clock, and the time that passes for those who sleep by it.
class ClockScene {
  public:
    virtual ~ClockScene() = default;
    [[nodiscard]] virtual Clock& clock() = 0;
    [[nodiscard]] virtual std::chrono::nanoseconds now() const = 0;
};

namespace {

class RealTime : public ClockScene {
  public:
    Clock& clock() override { return clock_; }
    std::chrono::nanoseconds now() const override {
        return std::chrono::steady_clock::now().time_since_epoch();
    }

  private:
    SystemClock clock_;
};

class RecordedTime : public ClockScene {
  public:
    Clock& clock() override { return clock_; }
    std::chrono::nanoseconds now() const override { return clock_.slept(); }

  private:
    RecordingClock clock_;
};

template <class Time>
std::unique_ptr<ClockScene> makeClockScene() {
    return std::make_unique<Time>();
}

}  // namespace

class ClockContract : public Contract<ClockScene> {};

TEST_P(ClockContract, ASleepLastsAtLeastAsLongAsAsked) {
    for (const std::chrono::microseconds duration :
         {std::chrono::microseconds(0), std::chrono::microseconds(125),
          std::chrono::microseconds(3000)}) {
        const auto before = scene_->now();
        scene_->clock().sleep(duration);
        EXPECT_GE(scene_->now() - before, duration);
    }
}

TEST_P(ClockContract, ItsOwnTimePassesWithASleepAndNeverGoesBack) {
    const auto before = scene_->clock().now();
    EXPECT_GE(scene_->clock().now(), before);
    scene_->clock().sleep(std::chrono::microseconds(2000));
    EXPECT_GE(scene_->clock().now() - before, std::chrono::microseconds(2000));
}

// A timeout that was computed and is over already.
TEST_P(ClockContract, ASleepOfLessThanNothingIsNone) {
    const auto before = scene_->now();
    scene_->clock().sleep(std::chrono::microseconds(-1));
    EXPECT_GE(scene_->now(), before);
}

INSTANTIATE_TEST_SUITE_P(Clock, ClockContract,
                         testing::Values(Adapter<ClockScene>{"Linux", makeClockScene<RealTime>},
                                         Adapter<ClockScene>{"Fake", makeClockScene<RecordedTime>}),
                         AdapterName());

}  // namespace installer::test

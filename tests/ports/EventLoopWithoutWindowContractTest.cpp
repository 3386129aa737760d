// What event loops promise whose sources can come to an end. A window's cannot: there is always the
// user.

#include "linux/process/PollEventLoop.h"
#include "tests/ports/WatchedPipe.h"
#include "tests/support/FakeEventLoop.h"

namespace installer::test {

namespace {

class HappeningsInMemory : public EventLoopScene {
  public:
    EventLoop& loop() override { return loop_; }
    void addSource(std::function<void()> handler) override { handler_ = std::move(handler); }
    void removeSource() override { handler_ = nullptr; }
    void happen() override { loop_.waiting.push_back(handler_); }
    void happenLater() override { loop_.coming.push_back(handler_); }

  private:
    FakeEventLoop loop_;
    std::function<void()> handler_;
};

const auto loopsWithoutWindow = testing::Values(
    Adapter<EventLoopScene>{"Linux", makeEventLoopScene<WatchedPipe<PollEventLoop>>},
    Adapter<EventLoopScene>{"Fake", makeEventLoopScene<HappeningsInMemory>});

}  // namespace

class EventLoopWithoutWindowContract : public EventLoopContract {};

TEST_P(EventLoopWithoutWindowContract, WithoutASourceNothingIsWaitedFor) {
    EXPECT_FALSE(scene_->loop().runOnce());
    scene_->loop().runUntilNow();
    EXPECT_FALSE(scene_->loop().runOnce());
}

TEST_P(EventLoopWithoutWindowContract, ASourceThatIsGoneIsNoSource) {
    addSource();
    scene_->removeSource();
    EXPECT_FALSE(scene_->loop().runOnce());
    EXPECT_EQ(handled_, 0);
}

INSTANTIATE_TEST_SUITE_P(EventLoop, EventLoopContract, loopsWithoutWindow, AdapterName());
INSTANTIATE_TEST_SUITE_P(EventLoop, EventLoopWithoutWindowContract, loopsWithoutWindow,
                         AdapterName());

}  // namespace installer::test

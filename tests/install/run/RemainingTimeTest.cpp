#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/run/RemainingTime.h"

namespace installer::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class RemainingTimeTest : public testing::Test {
  protected:
    RemainingTime remaining;
    RemainingTime::Time now{seconds(100)};
    double done = 0;

    /// Work goes on in steps of a tenth of a second.
    void work(seconds duration, double perSecond) {
        for (int step = 0; step < duration.count() * 10; ++step) {
            now += milliseconds(100);
            done += perSecond / 10;
            remaining.update(done, now);
        }
    }
};

TEST_F(RemainingTimeTest, IsNotKnownAtFirst) {
    EXPECT_EQ(remaining.shown(), std::nullopt);
    work(seconds(1), 0.01);
    EXPECT_EQ(remaining.shown(), std::nullopt);
}

TEST_F(RemainingTimeTest, IsNotKnownWhileHardlyAnythingIsDone) {
    work(seconds(20), 0.0001);
    EXPECT_EQ(remaining.shown(), std::nullopt);
}

TEST_F(RemainingTimeTest, IsShownInWholeMinutesThenInTensOfSecondsThenFive) {
    work(seconds(10), 0.002);
    EXPECT_EQ(remaining.shown(), seconds(540));
    work(seconds(435), 0.002);
    EXPECT_EQ(remaining.shown(), seconds(60));
    work(seconds(52), 0.002);
    EXPECT_EQ(remaining.shown(), seconds(5));
}

TEST_F(RemainingTimeTest, NeverGrowsFasterThanTheTimePasses) {
    work(seconds(4), 0.1);
    ASSERT_TRUE(remaining.shown().has_value());
    seconds before = *remaining.shown();
    const seconds first = before;
    // The work becomes fifty times slower.
    for (int second = 1; second <= 120; ++second) {
        work(seconds(1), 0.002);
        const seconds shown = *remaining.shown();
        // The step of a rounded time: ten seconds, or a minute.
        EXPECT_LE(shown - before, shown > seconds(90) ? seconds(60) : seconds(10)) << second;
        EXPECT_LE(shown - first, seconds(second + 60)) << second;
        before = shown;
    }
    EXPECT_GT(before, first);
}

TEST_F(RemainingTimeTest, ATimeThatHardlyChangesIsShownAsBefore) {
    work(seconds(10), 0.02);
    const auto shown = remaining.shown();
    ASSERT_TRUE(shown.has_value());
    for (int wave = 0; wave < 5; ++wave) {
        now += milliseconds(wave % 2 == 0 ? 300 : 100);
        done += 0.001;
        remaining.update(done, now);
        EXPECT_EQ(remaining.shown(), shown);
    }
}

TEST_F(RemainingTimeTest, TheTimeOfAQuestionCountsOneSecondOnly) {
    work(seconds(1), 0.02);
    now += seconds(600);
    work(seconds(4), 0.02);
    EXPECT_LE(*remaining.shown(), seconds(60));
}

TEST_F(RemainingTimeTest, TheNextRunKnowsNothingOfTheOneBefore) {
    work(seconds(5), 0.05);
    ASSERT_TRUE(remaining.shown().has_value());
    remaining.begin();
    EXPECT_EQ(remaining.shown(), std::nullopt);
}

}  // namespace
}  // namespace installer::test

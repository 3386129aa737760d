#include <chrono>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/installerctl/output/ProgressBar.h"

namespace installer::test {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint64_t megabytes = 1'000'000;
const std::string wiped = "\r\033[K";

/// A bar on a terminal whose time the test turns.
class ProgressBarTest : public testing::Test {
  protected:
    LiveLine::Place place() {
        return {&terminal_, [this] { return now_; }};
    }

    void pass(milliseconds time) { now_ += time; }

    /// What was shown since the last look.
    std::string shown() {
        std::string text = terminal_.str();
        terminal_.str("");
        return text;
    }

  private:
    std::ostringstream terminal_;
    LiveLine::Clock::time_point now_{};
};

TEST_F(ProgressBarTest, ShortWorkShowsNothing) {
    {
        ProgressBar bar("Installing", 100 * megabytes, place());
        bar.setFraction(0.5);
        pass(milliseconds(499));
        bar.setFraction(1);
    }
    EXPECT_EQ(shown(), "");
}

TEST_F(ProgressBarTest, LongWorkShowsShareRateAndTimeLeft) {
    ProgressBar bar("Installing", 100 * megabytes, place());
    pass(milliseconds(2000));
    bar.setFraction(0.25);
    EXPECT_EQ(shown(),
              "\rInstalling [########                      ] 25 %, 13 MB/s, 6 s left\033[K");
}

TEST_F(ProgressBarTest, WithoutAKnownAmountThereIsNoRate) {
    ProgressBar bar("Removing", 0, place());
    pass(milliseconds(1000));
    bar.setFraction(0.5);
    EXPECT_EQ(shown(), "\rRemoving [###############               ] 50 %, 1 s left\033[K");
}

TEST_F(ProgressBarTest, BytesThatAreAddedMoveIt) {
    ProgressBar bar("Comparing", 4 * megabytes, place());
    pass(milliseconds(1000));
    bar.add(megabytes);
    EXPECT_THAT(shown(), HasSubstr("] 25 %, 1 MB/s, 3 s left"));
    pass(milliseconds(1000));
    bar.add(megabytes);
    EXPECT_THAT(shown(), HasSubstr("] 50 %, 1 MB/s, 2 s left"));
}

TEST_F(ProgressBarTest, IsDrawnAtMostTenTimesASecond) {
    ProgressBar bar("Installing", 0, place());
    pass(milliseconds(500));
    bar.setFraction(0.1);
    EXPECT_NE(shown(), "");
    pass(milliseconds(99));
    bar.setFraction(0.2);
    EXPECT_EQ(shown(), "");
    pass(milliseconds(1));
    bar.setFraction(0.3);
    EXPECT_THAT(shown(), HasSubstr("30 %"));
}

TEST_F(ProgressBarTest, IsWipedAwayAtTheEnd) {
    {
        ProgressBar bar("Installing", 0, place());
        pass(milliseconds(500));
        bar.setFraction(1);
        EXPECT_THAT(shown(), HasSubstr("100 %, 0 s left"));
    }
    EXPECT_EQ(shown(), wiped);
}

TEST_F(ProgressBarTest, ShareBeyondItsEndsIsCutToThem) {
    ProgressBar bar("Installing", 0, place());
    pass(milliseconds(500));
    bar.setFraction(7);
    EXPECT_THAT(shown(), HasSubstr("100 %"));
    pass(milliseconds(100));
    bar.setFraction(-1);
    const std::string atTheStart = shown();
    EXPECT_THAT(atTheStart, HasSubstr("] 0 %"));
    EXPECT_THAT(atTheStart, Not(HasSubstr("left")));
}

TEST_F(ProgressBarTest, WithoutATerminalNothingIsShown) {
    auto nowhere = place();
    nowhere.terminal = nullptr;
    ProgressBar bar("Installing", 0, nowhere);
    pass(milliseconds(5000));
    bar.setFraction(0.5);
    EXPECT_EQ(shown(), "");
}

}  // namespace
}  // namespace installer::test

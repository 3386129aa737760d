#include <chrono>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tools/terminal/LiveLine.h"

namespace installer::test {
namespace {

using std::chrono::milliseconds;

/// A terminal whose time the test turns.
class LiveLineTest : public testing::Test {
  protected:
    LiveLine::Place place() {
        return {&terminal, [this] { return now; }};
    }

    std::ostringstream terminal;
    LiveLine::Clock::time_point now{};
};

TEST_F(LiveLineTest, IsDueAfterHalfASecondAndThenTenTimesASecond) {
    LiveLine line(place());
    EXPECT_FALSE(line.isDue());
    now += milliseconds(499);
    EXPECT_FALSE(line.isDue());
    now += milliseconds(1);
    EXPECT_TRUE(line.isDue());
    line.show("Packing");
    EXPECT_FALSE(line.isDue());
    now += milliseconds(100);
    EXPECT_TRUE(line.isDue());
}

TEST_F(LiveLineTest, EachTextTakesThePlaceOfTheOneBeforeAndTheLastIsWipedAway) {
    {
        LiveLine line(place());
        line.show("ten");
        line.show("11");
    }
    EXPECT_EQ(terminal.str(), "\rten\033[K\r11\033[K\r\033[K");
}

TEST_F(LiveLineTest, WithoutATextThereIsNothingToWipe) {
    {
        const LiveLine line(place());
    }
    EXPECT_EQ(terminal.str(), "");
}

TEST_F(LiveLineTest, WithoutATerminalItIsNeverDue) {
    auto nowhere = place();
    nowhere.terminal = nullptr;
    const LiveLine line(nowhere);
    now += milliseconds(5000);
    EXPECT_FALSE(line.isDue());
    EXPECT_EQ(line.seconds(), 5);
}

}  // namespace
}  // namespace installer::test

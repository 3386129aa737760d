#include <gtest/gtest.h>

#include "linux/process/SystemClock.h"

namespace installer::test {
namespace {

TEST(SystemClock, SleepsAtLeastAsLongAsAsked) {
    using Steady = std::chrono::steady_clock;
    SystemClock clock;
    const auto before = Steady::now();
    clock.sleep(std::chrono::microseconds(2000));
    EXPECT_GE(Steady::now() - before, std::chrono::microseconds(2000));
}

}  // namespace
}  // namespace installer::test

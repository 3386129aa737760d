#include <gtest/gtest.h>

#include "tools/installerctl/operations/Session.h"

namespace installer::test {
namespace {

TEST(SessionCompareVersions, NumbersCountAsNumbers) {
    EXPECT_LT(compareVersions("1.9", "1.10"), 0);
    EXPECT_GT(compareVersions("2", "1.99.99"), 0);
    EXPECT_EQ(compareVersions("1.0.1", "1.0.1"), 0);
}

TEST(SessionCompareVersions, AMissingNumberIsZero) {
    EXPECT_EQ(compareVersions("1", "1.0.0"), 0);
    EXPECT_LT(compareVersions("1", "1.0.1"), 0);
    EXPECT_EQ(compareVersions("", "0"), 0);
}

}  // namespace
}  // namespace installer::test

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/utsname.h>

#include "linux/desktop/SystemDescription.h"

namespace installer::test {
namespace {

using testing::HasSubstr;

TEST(SystemDescriptionDistributionName, IsTheOneForPeople) {
    EXPECT_EQ(distributionName("NAME=Debian\nPRETTY_NAME=\"Debian GNU/Linux 12\"\n"),
              "Debian GNU/Linux 12");
}

TEST(SystemDescriptionDistributionName, IsTheShortOneIfThereIsNoOther) {
    EXPECT_EQ(distributionName("MY_NAME=no\nNAME='Debian'\nPRETTY_NAME=\n"), "Debian");
}

TEST(SystemDescriptionDistributionName, HasNoBackslashes) {
    EXPECT_EQ(distributionName("NAME=\"a \\\"b\\\" \\$c\""), "a \"b\" $c");
}

TEST(SystemDescriptionDistributionName, IsLinuxWhenTheFileSaysNothing) {
    EXPECT_EQ(distributionName(""), "Linux");
    EXPECT_EQ(distributionName("NAME"), "Linux");
}

TEST(SystemDescription, NamesTheKernelAndTheProcessor) {
    utsname kernel{};
    ASSERT_EQ(::uname(&kernel), 0);
    EXPECT_THAT(systemDescription(), HasSubstr(kernel.release));
    EXPECT_THAT(systemDescription(), HasSubstr(kernel.machine));
}

}  // namespace
}  // namespace installer::test

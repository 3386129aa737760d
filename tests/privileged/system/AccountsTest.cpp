#include <cerrno>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "privileged/system/Accounts.h"

namespace installer::test {
namespace {

// Every Linux has root, and its home folder is fixed.
TEST(Accounts, FindsRootByNameAndByNumber) {
    for (const auto& root : {userNamed("root"), userNumbered(0)}) {
        ASSERT_TRUE(root) << root.error().message();
        EXPECT_EQ(root.value().number, 0U);
        EXPECT_EQ(root.value().name, "root");
        EXPECT_EQ(root.value().home, "/root");
    }
    const auto group = groupNamed("root");
    ASSERT_TRUE(group) << group.error().message();
    EXPECT_EQ(group.value(), 0U);
}

TEST(Accounts, RefusesWhatTheSystemDoesNotKnow) {
    const std::string unknown = "no-such-account";
    EXPECT_EQ(userNamed(unknown).error().value(), EINVAL);
    EXPECT_EQ(groupNamed(unknown).error().value(), EINVAL);
    EXPECT_EQ(userNumbered(std::numeric_limits<uid_t>::max() - 7).error().value(), EINVAL);
}

TEST(Accounts, RefusesAnEmptyNameAndANameWithANul) {
    for (const std::string& name : {std::string(), std::string("root\0x", 6)}) {
        EXPECT_EQ(userNamed(name).error().value(), EINVAL);
        EXPECT_EQ(groupNamed(name).error().value(), EINVAL);
    }
}

}  // namespace
}  // namespace installer::test

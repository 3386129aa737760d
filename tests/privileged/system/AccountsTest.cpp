#include <cerrno>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "privileged/system/Accounts.h"
#include "tests/privileged/system/OwnAccounts.h"

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

// The data base may hold a line without a name.
TEST(Accounts, AnEmptyNameIsNobodys) {
    EXPECT_EQ(withAccounts(":x:0:0::/root:\n", ":x:0:\n",
                           [] {
                               return userNamed("").error().message() + ", " +
                                      groupNamed("").error().message();
                           }),
              "Invalid argument, Invalid argument");
}

TEST(Accounts, FindsAnAccountHoweverLongItsEntryIs) {
    std::string members = "first";
    for (int index = 0; index < 3000; ++index) members += ",member" + std::to_string(index);
    const std::string home = "/" + std::string(20000, 'h');
    EXPECT_EQ(withAccounts("ada:x:4242:4243::" + home + ":\n", "crowd:x:4244:" + members + "\n",
                           [&]() -> std::string {
                               const auto group = groupNamed("crowd");
                               if (!group) return group.error().message();
                               const auto user = userNamed("ada");
                               if (!user) return user.error().message();
                               return std::to_string(group.value()) + " " +
                                      std::to_string(user.value().number) + " " +
                                      std::to_string(user.value().group) +
                                      (user.value().home == home ? " whole" : " cut");
                           }),
              "4244 4242 4243 whole");
}

TEST(Accounts, TellsWhenTheDataBaseItselfCannotBeRead) {
    EXPECT_EQ(withAccounts("ada:x:4242:4243:::\n", "crowd:x:4244:\n",
                           [] {
                               rlimit before{};
                               getrlimit(RLIMIT_NOFILE, &before);
                               const rlimit none{0, before.rlim_max};
                               setrlimit(RLIMIT_NOFILE, &none);
                               const auto group = groupNamed("crowd");
                               const auto user = userNamed("ada");
                               // The sanitizers open files, too.
                               setrlimit(RLIMIT_NOFILE, &before);
                               return group.error().message() + ", " + user.error().message();
                           }),
              "Too many open files, Too many open files");
}

// A data base without a file knows nobody.
TEST(Accounts, KnowsNobodyWithoutADataBase) {
    EXPECT_EQ(withAccounts("", "",
                           [] {
                               unlink("/etc/passwd");
                               unlink("/etc/group");
                               return groupNamed("root").error().message() + ", " +
                                      userNamed("root").error().message();
                           }),
              "Invalid argument, Invalid argument");
}

struct GroupRow {
    const char* name;
    std::string groups;
    gid_t group;
    bool isOwn;
};
void PrintTo(const GroupRow& row, std::ostream* out) {
    *out << row.name;
}

class AccountsIsOwnGroup : public testing::TestWithParam<GroupRow> {};

TEST_P(AccountsIsOwnGroup, IfItHasTheUsersNameAndNoOtherMember) {
    EXPECT_EQ(withAccounts("root:x:0:0::/root:\nada:x:4242:4243::/home/ada:\n", GetParam().groups,
                           [] { return isOwnGroup(GetParam().group, 4242) ? "own" : "not own"; }),
              GetParam().isOwn ? "own" : "not own");
}

INSTANTIATE_TEST_SUITE_P(
    Groups, AccountsIsOwnGroup,
    testing::Values(GroupRow{"nameWithoutMembers", "ada:x:4243:\n", 4243, true},
                    GroupRow{"memberIsTheUser", "ada:x:4243:ada\n", 4243, true},
                    GroupRow{"anotherMember", "ada:x:4243:bob\n", 4243, false},
                    GroupRow{"anotherMemberBesideTheUser", "ada:x:4243:ada,bob\n", 4243, false},
                    GroupRow{"anotherName", "users:x:4243:\n", 4243, false},
                    GroupRow{"anotherNameWithTheUserAsMember", "users:x:4243:ada\n", 4243, false},
                    GroupRow{"noSuchGroup", "ada:x:4243:\n", 4244, false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(AccountsIsOwnGroupOfNobody, IsNoneForAUserThatTheSystemDoesNotKnow) {
    EXPECT_EQ(withAccounts("root:x:0:0::/root:\n", "ada:x:4243:\n",
                           [] { return isOwnGroup(4243, 4242) ? "own" : "not own"; }),
              "not own");
}

TEST(AccountsIsOwnHome, IsAFolderThatBelongsToTheUser) {
    const Disk disk;
    constexpr uid_t user = 65534;
    disk.makeFolder("users");
    disk.makeFolder("roots");
    ASSERT_EQ(chown(disk.path("users").c_str(), user, 0), 0);
    const UserAccount account{user, "ada", disk.path("roots")};
    EXPECT_TRUE(isOwnHome(disk.path("users"), account));
    EXPECT_FALSE(isOwnHome(disk.path("roots"), account)) << "what the account calls its home";
    EXPECT_FALSE(isOwnHome(disk.path("missing"), account));
    const UserAccount root{0, "root", disk.path("roots")};
    EXPECT_TRUE(isOwnHome(disk.path("users"), root)) << "root acts for its owner";
    EXPECT_TRUE(isOwnHome(disk.path("roots"), root));
    const UserAccount homeless{0, "root", disk.path("missing")};
    EXPECT_FALSE(isOwnHome(disk.path("missing"), homeless));
    EXPECT_FALSE(isOwnHome(disk.path(), root)) << "root's, but not its home";
}

}  // namespace
}  // namespace installer::test

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "privileged/wall/InvokingUser.h"
#include "tests/privileged/system/OwnAccounts.h"

namespace installer::test {
namespace {

constexpr uid_t ada = 4242;

/// Whom the helper acts for when it is started with these variables; nullopt for nobody.
std::optional<uid_t> startedWith(StartedBy program, std::vector<std::string> variables) {
    std::vector<char*> environment;
    for (std::string& variable : variables) environment.push_back(variable.data());
    environment.push_back(nullptr);
    char** const before = environ;
    environ = environment.data();
    const auto user = InvokingUser::whoStartedBy(program);
    environ = before;
    return user ? std::optional(user->number()) : std::nullopt;
}

TEST(InvokingUser, StandsInTheVariableOfTheProgramThatAsked) {
    const std::vector<std::string> both = {"PKEXEC_UID=4242", "SUDO_UID=4243"};
    EXPECT_EQ(startedWith(StartedBy::polkit, both), 4242U);
    EXPECT_EQ(startedWith(StartedBy::sudo, both), 4243U);
    EXPECT_EQ(startedWith(StartedBy::root, both), ::getuid());
    EXPECT_EQ(startedWith(StartedBy::polkit, {both[1]}), std::nullopt);
    EXPECT_EQ(startedWith(StartedBy::sudo, {both[0]}), std::nullopt);
}

TEST(InvokingUser, IsNobodyIfTheVariableStandsThereTwice) {
    EXPECT_EQ(startedWith(StartedBy::polkit, {"PKEXEC_UID=1", "PKEXEC_UID=1"}), std::nullopt);
    EXPECT_EQ(startedWith(StartedBy::polkit, {"PKEXEC_UID=1", "PKEXEC_UID_OLD=2", "PKEXEC_UI=3"}),
              1U);
}

TEST(InvokingUser, IsNobodyIfTheVariableIsNoNumberOfAUser) {
    for (const char* value : {"", "-1", "+1", " 1", "1 ", "0x1", "nobody", "4294967295",
                              "4294967296", "99999999999999999999"}) {
        EXPECT_EQ(startedWith(StartedBy::sudo, {std::string("SUDO_UID=") + value}), std::nullopt)
            << value;
    }
    EXPECT_EQ(startedWith(StartedBy::sudo, {"SUDO_UID=4294967294"}), 4294967294U);
    EXPECT_EQ(startedWith(StartedBy::sudo, {"SUDO_UID=0"}), 0U);
}

TEST(InvokingUser, ReadsByTheirOwnRightsButRootByNoOthers) {
    const InvokingUser user(ada);
    ASSERT_NE(user.reader(), nullptr);
    EXPECT_EQ(user.reader()->user(), ada);
    EXPECT_EQ(user.reader(), user.reader());
    EXPECT_EQ(InvokingUser(0).reader(), nullptr);
}

TEST(InvokingUser, IsNamedByEachOfTheirLoginNamesAndByNoOther) {
    const std::string users =
        "root:x:0:0::/root:\nada:x:4242:4243:::\ncountess:x:4242:4243:::\nbob:x:4244:4244:::\n";
    EXPECT_EQ(withAccounts(users, "",
                           [] {
                               InvokingUser user(ada);
                               std::string answers;
                               for (const char* name :
                                    {"", "bob", "carol", "ada", "bob", "countess", "ada", "4242"}) {
                                   answers += user.isNamed(name) ? "yes " : "no ";
                               }
                               return answers;
                           }),
              "no no no yes no yes yes no ");
}

}  // namespace
}  // namespace installer::test

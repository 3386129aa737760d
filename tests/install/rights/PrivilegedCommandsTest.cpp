#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/rights/PrivilegedCommands.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using Outcome = PrivilegedCommands::Outcome;

TEST(PrivilegedCommandsIsFatalAuthCode, HoldsForTheTruncatedAuthorizationStatuses) {
    EXPECT_FALSE(isFatalAuthCode(0));
    EXPECT_FALSE(isFatalAuthCode(5529));
    EXPECT_TRUE(isFatalAuthCode(5530));
    EXPECT_TRUE(isFatalAuthCode(5531));
    EXPECT_TRUE(isFatalAuthCode(5540));
    EXPECT_FALSE(isFatalAuthCode(5541));
    EXPECT_FALSE(isFatalAuthCode(static_cast<std::uint32_t>(-60006)));
    EXPECT_FALSE(isFatalAuthCode(static_cast<std::uint32_t>(-1)));
}

/// A command that the caller asks the outcome of, and what is executed.
struct CheckedRow {
    std::string name;
    std::function<Outcome(PrivilegedCommands&)> give;
    std::string executed;
};

class PrivilegedCommandsWithCheckedResult : public testing::TestWithParam<CheckedRow> {};

TEST_P(PrivilegedCommandsWithCheckedResult, RunsTheToolAndWaitsForItsEnd) {
    EngineParts engine;
    EXPECT_EQ(GetParam().give(engine.commands), Outcome::finished);
    EXPECT_THAT(engine.fake.journal, ElementsAre(GetParam().executed, "wait"));
    EXPECT_FALSE(engine.run.authDenied);
}

TEST_P(PrivilegedCommandsWithCheckedResult, IsRefusedByEachFatalStatus) {
    for (std::int32_t status = -60006; status <= -59996; ++status) {
        EngineParts engine;
        refuseFromCommand(engine.fake, 1, status);
        EXPECT_EQ(GetParam().give(engine.commands), Outcome::refused) << status;
        EXPECT_TRUE(engine.run.authDenied) << status;
    }
}

TEST_P(PrivilegedCommandsWithCheckedResult, GoesOnAfterAnyOtherFailedLaunch) {
    for (const std::int32_t status : {-60007, -60008, -59995, -1, 1}) {
        EngineParts engine;
        refuseFromCommand(engine.fake, 1, status);
        EXPECT_EQ(GetParam().give(engine.commands), Outcome::finished) << status;
        EXPECT_FALSE(engine.run.authDenied) << status;
    }
}

TEST_P(PrivilegedCommandsWithCheckedResult, IsRefusedWithoutAnAuthorization) {
    EngineParts engine;
    engine.run.setAuthorization(nullptr);
    EXPECT_EQ(GetParam().give(engine.commands), Outcome::refused);
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_THAT(engine.fake.journal, ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, PrivilegedCommandsWithCheckedResult,
    testing::Values(
        CheckedRow{"MakeFolders", [](auto& commands) { return commands.makeFolders("/a b"); },
                   "/bin/mkdir -m775 -p /a b"},
        CheckedRow{"RemoveItem", [](auto& commands) { return commands.removeItem("/a b"); },
                   "/bin/rm -fR /a b"},
        CheckedRow{"CopyItem", [](auto& commands) { return commands.copyItem("/s", "/a b"); },
                   "/bin/cp -R /s /a b"},
        CheckedRow{"GiveItemToUser", [](auto& commands) { return commands.giveItemToUser("/a b"); },
                   "/usr/sbin/chown -R tester:admin /a b"},
        CheckedRow{"SetItemPermissions",
                   [](auto& commands) { return commands.setItemPermissions("/a b"); },
                   "/bin/chmod -R 0775 /a b"}),
    [](const auto& test) { return test.param.name; });

/// A command whose outcome nobody asks for.
struct UncheckedRow {
    std::string name;
    std::function<void(PrivilegedCommands&)> give;
    std::vector<std::string> executed;
};

class PrivilegedCommandsWithIgnoredResult : public testing::TestWithParam<UncheckedRow> {};

TEST_P(PrivilegedCommandsWithIgnoredResult, RunTheirTools) {
    EngineParts engine;
    GetParam().give(engine.commands);
    EXPECT_EQ(engine.fake.journal, GetParam().executed);
}

TEST_P(PrivilegedCommandsWithIgnoredResult, ARefusalChangesNothing) {
    EngineParts engine;
    refuseFromCommand(engine.fake, 1);
    GetParam().give(engine.commands);
    EXPECT_FALSE(engine.run.authDenied);
}

TEST_P(PrivilegedCommandsWithIgnoredResult, DoNothingWithoutAnAuthorization) {
    EngineParts engine;
    engine.run.setAuthorization(nullptr);
    GetParam().give(engine.commands);
    EXPECT_FALSE(engine.run.authDenied);
    EXPECT_THAT(engine.fake.journal, ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, PrivilegedCommandsWithIgnoredResult,
    testing::Values(UncheckedRow{"GiveFolderToUser",
                                 [](auto& commands) { commands.giveFolderToUser("/a"); },
                                 {"/usr/sbin/chown -R tester:admin /a", "wait"}},
                    UncheckedRow{"RemoveQuarantine",
                                 [](auto& commands) { commands.removeQuarantine("/a"); },
                                 {"/usr/bin/xattr -dr com.apple.quarantine /a", "wait"}},
                    UncheckedRow{"RunLsregisterWithoutWaiting",
                                 [](auto& commands) { commands.runLsregister(); },
                                 {lsregisterCommand}},
                    UncheckedRow{"RenewLogFileWithAChmodOfItsOwn",
                                 [](auto& commands) { commands.renewLogFile("/l"); },
                                 {"/bin/rm -fR /l", "wait", "/usr/bin/touch /l", "wait",
                                  "/usr/sbin/chown -R tester:admin /l", "wait",
                                  "/usr/sbin/chmod -R 0644 /l", "wait"}},
                    UncheckedRow{"MakeIdentifierFile",
                                 [](auto& commands) { commands.makeIdentifierFile("/i"); },
                                 {"/usr/bin/touch /i", "wait", "/usr/sbin/chown -R tester:admin /i",
                                  "wait", "/bin/chmod -R 0664 /i", "wait"}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace installer::test

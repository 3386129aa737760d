#include <algorithm>
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
    bool outputIsRead = true;
};

class PrivilegedCommandsWithCheckedResult : public testing::TestWithParam<CheckedRow> {};

TEST_P(PrivilegedCommandsWithCheckedResult, RunsTheToolAndWaitsForItsEnd) {
    EngineParts engine;
    EXPECT_EQ(GetParam().give(engine.commands), Outcome::finished);
    EXPECT_THAT(engine.fake.journal, ElementsAre(GetParam().executed, "wait"));
    EXPECT_FALSE(engine.run.authDenied);
}

TEST_P(PrivilegedCommandsWithCheckedResult, ReadsTheOutputOfEveryToolButMkdir) {
    EngineParts engine;
    EXPECT_EQ(GetParam().give(engine.commands), Outcome::finished);
    EXPECT_EQ(engine.fake.authorizations.toolsRead.size(), GetParam().outputIsRead ? 1U : 0U);
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
                   "/bin/mkdir -m775 -p /a b", false},
        CheckedRow{"RemoveItem", [](auto& commands) { return commands.removeItem("/a b"); },
                   "/bin/rm -fR /a b"},
        CheckedRow{"CopyItem", [](auto& commands) { return commands.copyItem("/s", "/a b"); },
                   "/bin/cp -R /s /a b"}),
    [](const auto& test) { return test.param.name; });

// Items, whose commands are answered later.

TEST(PrivilegedCommandsForItems, GiveTheFirstOneToTheUserAndConfirmItAtOnce) {
    EngineParts engine;
    EXPECT_EQ(engine.commands.finishItem("/a b"), Outcome::finished);
    EXPECT_THAT(engine.fake.journal, ElementsAre("/usr/sbin/chown -R tester:admin /a b",
                                                 "/bin/chmod -R 0775 /a b", "wait", "wait"));
    EXPECT_THAT(engine.fake.authorizations.toolsRead, ElementsAre("/usr/sbin/chown", "/bin/chmod"));
    EXPECT_THAT(engine.run.installedPaths, ElementsAre("/a b"));
}

TEST(PrivilegedCommandsForItems, ListLaterOnesOnceTheirAnswersHaveCome) {
    EngineParts engine;
    EXPECT_EQ(engine.commands.finishItem("/1"), Outcome::finished);
    engine.fake.journal.clear();
    EXPECT_EQ(engine.commands.finishItem("/2"), Outcome::finished);
    EXPECT_EQ(engine.commands.finishItem("/3"), Outcome::finished);
    EXPECT_THAT(engine.run.installedPaths, ElementsAre("/1"));
    EXPECT_THAT(engine.fake.journal, testing::Each(testing::Ne("wait")));
    EXPECT_EQ(engine.commands.confirmItems(), Outcome::finished);
    EXPECT_THAT(engine.run.installedPaths, ElementsAre("/1", "/2", "/3"));
}

TEST(PrivilegedCommandsForItems, WaitForTheOldestWhenVeryManyAreUnderWay) {
    EngineParts engine;
    for (int item = 0; item < 1000; ++item) {
        EXPECT_EQ(engine.commands.finishItem("/" + std::to_string(item)), Outcome::finished);
    }
    const auto waits = std::ranges::count(engine.fake.journal, "wait");
    EXPECT_EQ(engine.run.installedPaths.size() * 2, static_cast<std::size_t>(waits));
    EXPECT_GE(engine.run.installedPaths.size(), 1000U - 64U);
    EXPECT_LT(engine.run.installedPaths.size(), 1000U);
}

TEST(PrivilegedCommandsForItems, AreConfirmedBeforeAnyOtherCommand) {
    for (const auto& command : std::vector<std::function<void(PrivilegedCommands&)>>{
             [](auto& commands) { static_cast<void>(commands.removeItem("/x")); },
             [](auto& commands) { static_cast<void>(commands.copyItem("/x", "/y")); },
             [](auto& commands) { static_cast<void>(commands.makeFolders("/x")); },
             [](auto& commands) { commands.removeQuarantine("/x"); },
             [](auto& commands) { commands.runLsregister(); },
             [](auto& commands) { commands.renewLogFile("/x"); }}) {
        EngineParts engine;
        static_cast<void>(engine.commands.finishItem("/1"));
        static_cast<void>(engine.commands.finishItem("/2"));
        const std::size_t sent = engine.fake.journal.size();
        command(engine.commands);
        EXPECT_THAT(engine.run.installedPaths, ElementsAre("/1", "/2"));
        EXPECT_EQ(engine.fake.journal.at(sent), "wait");
    }
}

TEST(PrivilegedCommandsForItems, AreNotListedWhenRightsAreRefused) {
    for (int command = 1; command <= 4; ++command) {
        EngineParts engine;
        refuseFromCommand(engine.fake, command);
        static_cast<void>(engine.commands.finishItem("/1"));
        const Outcome outcome = engine.commands.finishItem("/2");
        EXPECT_EQ(outcome, Outcome::refused);
        EXPECT_TRUE(engine.run.authDenied);
        static_cast<void>(engine.commands.confirmItems());
        EXPECT_EQ(engine.run.installedPaths.size(), command <= 2 ? 0U : 1U) << command;
    }
}

TEST(PrivilegedCommandsForItems, UnderWayAreListedAsSoonAsTheNextOneIsRefused) {
    for (const int command : {5, 6}) {
        EngineParts engine;
        refuseFromCommand(engine.fake, command);
        for (const char* item : {"/1", "/2"}) {
            EXPECT_EQ(engine.commands.finishItem(item), Outcome::finished);
        }
        EXPECT_EQ(engine.commands.finishItem("/3"), Outcome::refused);
        EXPECT_THAT(engine.run.installedPaths, ElementsAre("/1", "/2"));
    }
}

TEST(PrivilegedCommandsForItems, GoOnAfterAnyOtherFailedLaunch) {
    EngineParts engine;
    refuseFromCommand(engine.fake, 1, -60007);
    EXPECT_EQ(engine.commands.finishItem("/1"), Outcome::finished);
    EXPECT_THAT(engine.run.installedPaths, ElementsAre("/1"));
}

/// A command whose outcome nobody asks for.
struct UncheckedRow {
    std::string name;
    std::function<void(PrivilegedCommands&)> give;
    std::vector<std::string> executed;
    std::vector<std::string> read;  ///< the tools whose output is read
};

class PrivilegedCommandsWithIgnoredResult : public testing::TestWithParam<UncheckedRow> {};

TEST_P(PrivilegedCommandsWithIgnoredResult, RunTheirTools) {
    EngineParts engine;
    GetParam().give(engine.commands);
    EXPECT_EQ(engine.fake.journal, GetParam().executed);
}

TEST_P(PrivilegedCommandsWithIgnoredResult, ReadTheOutputOfAllToolsButThatOfMadeFolders) {
    EngineParts engine;
    GetParam().give(engine.commands);
    EXPECT_EQ(engine.fake.authorizations.toolsRead, GetParam().read);
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
                                 {"/usr/sbin/chown -R tester:admin /a", "wait"},
                                 {}},
                    UncheckedRow{"RemoveQuarantine",
                                 [](auto& commands) { commands.removeQuarantine("/a"); },
                                 {"/usr/bin/xattr -dr com.apple.quarantine /a", "wait"},
                                 {"/usr/bin/xattr"}},
                    UncheckedRow{"RunLsregisterWithoutWaiting",
                                 [](auto& commands) { commands.runLsregister(); },
                                 {lsregisterCommand},
                                 {lsregisterTool}},
                    UncheckedRow{
                        "RenewLogFileWithAChmodOfItsOwn",
                        [](auto& commands) { commands.renewLogFile("/l"); },
                        {"/bin/rm -fR /l", "wait", "/usr/bin/touch /l", "wait",
                         "/usr/sbin/chown -R tester:admin /l", "wait", "/usr/sbin/chmod -R 0644 /l",
                         "wait"},
                        {"/bin/rm", "/usr/bin/touch", "/usr/sbin/chown", "/usr/sbin/chmod"}},
                    UncheckedRow{"MakeIdentifierFile",
                                 [](auto& commands) { commands.makeIdentifierFile("/i"); },
                                 {"/usr/bin/touch /i", "wait", "/usr/sbin/chown -R tester:admin /i",
                                  "wait", "/bin/chmod -R 0664 /i", "wait"},
                                 {"/usr/bin/touch", "/usr/sbin/chown", "/bin/chmod"}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace installer::test

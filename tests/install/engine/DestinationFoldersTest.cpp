#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/engine/DestinationFolders.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

FileAttributeChanges withPermissions(std::uint32_t permissions) {
    return {.owner = {}, .group = {}, .permissions = permissions};
}

TEST(DestinationFoldersEnsureDirExists, AnExistingFolderIsLeftAsItIs) {
    EngineParts engine;
    engine.fake.memory.addFolder("/a", 0700);
    engine.folders.ensureDirExists("/a");
    EXPECT_THAT(engine.operations(), ElementsAre());
}

TEST(DestinationFoldersEnsureDirExists, WhateverElseIsInThePlaceIsLeftAsItIsToo) {
    EngineParts engine;
    engine.fake.memory.addFile("/file");
    engine.fake.memory.addLink("/link", "/nowhere");
    for (const char* path : {"/file", "/link"}) engine.folders.ensureDirExists(path);
    EXPECT_THAT(engine.operations(), ElementsAre());
}

TEST(DestinationFoldersEnsureDirExists, OnlyTheFolderIsMadeWhenItsParentIsThere) {
    EngineParts engine;
    engine.fake.memory.addFolder("/a");
    engine.folders.ensureDirExists("/a/b");
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /a/b 0775", "setAttributes /a/b tester:admin 0775"));
}

TEST(DestinationFoldersEnsureDirExists,
     TheParentThatWasMissingIsGivenToTheUserAndFoldersAboveItAreNot) {
    EngineParts engine;
    engine.folders.ensureDirExists("/a/b/c");
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /a/b 0775", "setAttributes /a/b tester:admin 0775",
                            "createFolders /a/b/c 0775", "setAttributes /a/b/c tester:admin 0775"));
    EXPECT_EQ(engine.fake.memory.node("/a/b")->group, "admin");
    EXPECT_NE(engine.fake.memory.node("/a")->group, "admin");
}

TEST(DestinationFoldersEnsureDirExists, ItemsThatAreUnderWayAreConfirmedBeforeAFolderIsMade) {
    EngineParts engine;
    for (const char* item : {"/1", "/2"}) {
        ASSERT_EQ(engine.commands.finishItem(item), PrivilegedCommands::Outcome::finished);
    }
    engine.fake.journal.clear();
    engine.folders.ensureDirExists("/a");
    EXPECT_THAT(engine.fake.journal, ElementsAre("wait", "wait", "createFolders /a 0775",
                                                 "setAttributes /a tester:admin 0775"));
}

/// A disk that does not answer when it is asked whether there is something.
class BlindFileManager : public RecordingFileManager {
  public:
    using RecordingFileManager::RecordingFileManager;
    bool exists(const std::string&) override { return false; }
};

TEST(DestinationFoldersEnsureDirExists, AFolderThatCanBeListedIsThereWhateverElseTheDiskSays) {
    EngineParts engine;
    BlindFileManager files(engine.fake.memory, engine.fake.journal);
    Platform platform = platformWith(files, engine.fake);
    DestinationFolders folders(platform, engine.run, engine.commands);
    engine.fake.memory.addFile("/a/b/of somebody else");
    folders.ensureDirExists("/a/b");
    EXPECT_THAT(engine.operations(), ElementsAre());
    folders.ensureDirExists("/a/c");
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /a/c 0775", "setAttributes /a/c tester:admin 0775"));
}

/// Folders whose contents the user may not look at.
void hideBelow(EngineParts& engine, const std::string& folder) {
    engine.fake.files.setFault([folder](const RecordingFileManager::Operation& operation) {
        return operation.at(1).starts_with(folder + "/")
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
}

TEST(DestinationFoldersEnsureDirExists, AFolderThatTheUserMayNotLookAtIsLeftAsItIs) {
    EngineParts engine;
    engine.fake.memory.addFile("/a/b/of somebody else");
    BlindFileManager files(engine.fake.files, engine.fake.journal);
    Platform platform = platformWith(files, engine.fake);
    DestinationFolders folders(platform, engine.run, engine.commands);
    hideBelow(engine, "/a");
    folders.ensureDirExists("/a/b");
    EXPECT_THAT(engine.operations(), ElementsAre());
}

TEST(DestinationFoldersEnsureDirExists, WhatLiesInAFolderThatTurnedUpMeanwhileIsGivenToTheUserToo) {
    EngineParts engine;
    engine.fake.files.setFault([&](const RecordingFileManager::Operation& operation) {
        if (operation.front() == "createFolders") engine.fake.memory.addFile("/a/other");
        return std::error_code();
    });
    engine.folders.ensureDirExists("/a");
    EXPECT_EQ(engine.fake.memory.node("/a/other")->group, "admin");
}

TEST(DestinationFoldersEnsureDirExists, TheAdministratorMakesWhatTheUserMayNot) {
    EngineParts engine;
    engine.fake.memory.makeUnwritable("/");
    engine.folders.ensureDirExists("/a/b/c");
    EXPECT_THAT(
        engine.operations(),
        ElementsAre("createFolders /a/b 0775", "/bin/mkdir -m775 -p /a/b",
                    "/usr/sbin/chown -R tester:admin /a/b", "createFolders /a/b/c 0775",
                    "/bin/mkdir -m775 -p /a/b/c", "/usr/sbin/chown -R tester:admin /a/b/c"));
    EXPECT_EQ(engine.fake.memory.node("/a/b/c")->permissions, 0775U);
}

TEST(DestinationFoldersEnsureDirExists, ARefusalForTheParentLeavesTheRest) {
    EngineParts engine;
    engine.fake.memory.makeUnwritable("/");
    refuseFromCommand(engine.fake, 1);
    engine.folders.ensureDirExists("/a/b");
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /a 0775", "/bin/mkdir -m775 -p /a"));
}

TEST(DestinationFoldersEnsureDirExists, ARefusalForTheFolderItselfLeavesItsOwnerAlone) {
    EngineParts engine;
    engine.fake.memory.addFolder("/a");
    engine.fake.memory.makeUnwritable("/");
    refuseFromCommand(engine.fake, 1);
    engine.folders.ensureDirExists("/a/b");
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /a/b 0775", "/bin/mkdir -m775 -p /a/b"));
}

TEST(DestinationFoldersEnsureDirExists, TheOutcomeOfTheChangeOfOwnerIsIgnored) {
    EngineParts engine;
    engine.fake.memory.makeUnwritable("/");
    refuseFromCommand(engine.fake, 4);
    engine.folders.ensureDirExists("/a/b");
    EXPECT_FALSE(engine.run.authDenied);
    EXPECT_TRUE(engine.fake.memory.exists("/a/b"));
    EXPECT_TRUE(engine.operations().back().starts_with("/usr/sbin/chown"));
}

TEST(DestinationFoldersEnsureDirExists, ALaunchThatFailedOtherwiseIsFollowedByTheNextStep) {
    EngineParts engine;
    engine.fake.memory.makeUnwritable("/");
    refuseFromCommand(engine.fake, 1, -60031);
    engine.folders.ensureDirExists("/a/b");
    EXPECT_FALSE(engine.run.authDenied);
    EXPECT_EQ(engine.operations().size(), 6U);
}

TEST(DestinationFoldersEnsureDirExists, SeparatorsAtTheEndAndDoubledOnesDoNotCount) {
    EngineParts engine;
    engine.fake.memory.addFolder("/a");
    engine.folders.ensureDirExists("/a//b/");
    EXPECT_THAT(engine.operations(),
                ElementsAre("createFolders /a/b 0775", "setAttributes /a/b tester:admin 0775"));
}

TEST(DestinationFoldersSetAttributesRecursive,
     ReachesEverythingBelowAFolderHiddenEntriesAndPackagesIncluded) {
    EngineParts engine;
    engine.fake.memory.addFile("/a/.hidden");
    engine.fake.memory.addFile("/a/T.app/x");
    engine.folders.setAttributesRecursive("/a", {.owner = "o", .group = "g", .permissions = 0640});
    EXPECT_THAT(
        engine.operations(),
        ElementsAre("setAttributes /a o:g 0640", "setAttributes /a/.hidden o:g 0640",
                    "setAttributes /a/T.app o:g 0640", "setAttributes /a/T.app/x o:g 0640"));
}

TEST(DestinationFoldersSetAttributesRecursive, LinksAreChangedThemselvesAndNotFollowed) {
    EngineParts engine;
    engine.fake.memory.addFile("/elsewhere/file");
    engine.fake.memory.addLink("/a/link", "/elsewhere");
    engine.folders.setAttributesRecursive("/a", {.owner = "o", .group = {}, .permissions = {}});
    EXPECT_THAT(engine.operations(),
                ElementsAre("setAttributes /a o:- -", "setAttributes /a/link o:- -"));
    EXPECT_EQ(engine.fake.memory.node("/elsewhere/file")->owner, "tester");
}

TEST(DestinationFoldersSetAttributesRecursive, AFailedChangeDoesNotStopIt) {
    EngineParts engine;
    engine.fake.memory.addFile("/a/b");
    failOperation(engine.fake, "setAttributes");
    engine.folders.setAttributesRecursive("/a", withPermissions(0600));
    EXPECT_THAT(engine.operations(),
                ElementsAre("setAttributes /a -:- 0600", "setAttributes /a/b -:- 0600"));
}

TEST(DestinationFoldersSetAttributesRecursive, WhatTheEntryIsWasReadBeforeTheChange) {
    EngineParts engine;
    engine.fake.memory.addFile("/a/b");
    bool changed = false;
    engine.fake.files.setFault([&](const RecordingFileManager::Operation& operation) {
        if (operation.front() == "setAttributes") changed = true;
        return operation.front() == "attributes" && changed
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    engine.folders.setAttributesRecursive("/a", withPermissions(0));
    EXPECT_THAT(engine.operations(),
                ElementsAre("setAttributes /a -:- 0000", "setAttributes /a/b -:- 0000"));
}

// It may be a link to a folder somewhere else.
TEST(DestinationFoldersSetAttributesRecursive, WhatCannotBeLookedAtIsChangedItselfAndNotEntered) {
    EngineParts engine;
    engine.fake.memory.addFile("/a/b");
    failOperation(engine.fake, "attributes");
    engine.folders.setAttributesRecursive("/a", withPermissions(0700));
    EXPECT_THAT(engine.operations(), ElementsAre("setAttributes /a -:- 0700"));
}

TEST(DestinationFoldersSetAttributesRecursive, AFolderThatCannotBeListedIsChangedItself) {
    EngineParts engine;
    engine.fake.memory.addFile("/a/b");
    failOperation(engine.fake, "list");
    engine.folders.setAttributesRecursive("/a", withPermissions(0700));
    EXPECT_THAT(engine.operations(), ElementsAre("setAttributes /a -:- 0700"));
}

}  // namespace
}  // namespace installer::test

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/HostModel.h"
#include "install/after/EarlierCopies.h"
#include "tests/install/engine/EngineParts.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::string sharedSupport = "/Installer.app/Contents/SharedSupport";
const std::string plugIns = sharedSupport + "/PlugIn";
const std::string autoLayerItems = sharedSupport + "/AutoLayer";
const std::string folder = "/My Plug-Ins";

/// A host with a folder of its own, and a machine that finds nothing unless a test says so.
class EarlierCopiesTest : public testing::Test {
  protected:
    HostModel host(const std::string& plugInPath = folder) {
        return UnknownHostModel(fake.platform, plugInPath);
    }
    void unInstall(const HostModel& from) {
        EarlierCopies(fake.platform, engine.commands).unInstallForHost(from);
    }
    void unInstall() { unInstall(host()); }

    /// An entry on the disk that a search for the pattern finds.
    void addFound(const std::string& pattern, const std::string& path) {
        memory.addFile(path);
        fake.fileQueries.found[pattern].push_back({path.substr(path.rfind('/') + 1), path});
    }

    EngineParts engine;
    FakePlatform& fake = engine.fake;
    MemoryFileManager& memory = fake.memory;
};

// The searched names.

TEST_F(EarlierCopiesTest, PlugInsAreSearchedFirstAndThenAutoLayerItemsAsTheFoldersListThem) {
    memory.addFile(plugIns + "/Zoom.plugin");
    memory.addFile(plugIns + "/Blur.plugin");
    memory.addFile(autoLayerItems + "/Layers.jsx");
    memory.addFile(autoLayerItems + "/Actions.atn");
    unInstall();
    EXPECT_THAT(fake.journal, ElementsAre("find Zoom.plugin below " + folder, "stop",
                                          "find Blur.plugin below " + folder, "stop",
                                          "find Layers.jsx below " + folder, "stop",
                                          "find Actions.atn below " + folder, "stop"));
}

TEST_F(EarlierCopiesTest, ANameInBothFoldersIsSearchedTwice) {
    memory.addFile(plugIns + "/Same");
    memory.addFile(autoLayerItems + "/Same");
    unInstall();
    EXPECT_THAT(fake.journal, ElementsAre("find Same below " + folder, "stop",
                                          "find Same below " + folder, "stop"));
}

TEST_F(EarlierCopiesTest, WhatIsInsideAnItemIsNotSearchedAndAHiddenItemIs) {
    memory.addFile(plugIns + "/F.plugin/Contents/deep");
    memory.addFile(plugIns + "/.hidden");
    unInstall();
    EXPECT_THAT(fake.journal, ElementsAre("find F.plugin below " + folder, "stop",
                                          "find .hidden below " + folder, "stop"));
}

TEST_F(EarlierCopiesTest, AMissingPlugInFolderEmptiesTheWholeList) {
    memory.addFile(autoLayerItems + "/Layers.jsx");
    addFound("Layers.jsx", folder + "/Layers.jsx");
    unInstall();
    EXPECT_THAT(fake.journal, IsEmpty());
}

TEST_F(EarlierCopiesTest, AnUnreadablePlugInFolderEmptiesTheWholeList) {
    memory.addFile(plugIns + "/F.plugin");
    memory.addFile(autoLayerItems + "/Layers.jsx");
    fake.files.setFault([](const RecordingFileManager::Operation& operation) {
        return operation == RecordingFileManager::Operation{"list", plugIns}
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    unInstall();
    EXPECT_THAT(fake.journal, IsEmpty());
}

TEST_F(EarlierCopiesTest, AnEmptyPlugInFolderLeavesTheAutoLayerItems) {
    memory.addFolder(plugIns);
    memory.addFile(autoLayerItems + "/Layers.jsx");
    unInstall();
    EXPECT_THAT(fake.journal, ElementsAre("find Layers.jsx below " + folder, "stop"));
}

TEST_F(EarlierCopiesTest, AMissingAutoLayerFolderLeavesThePlugIns) {
    memory.addFile(plugIns + "/F.plugin");
    unInstall();
    EXPECT_THAT(fake.journal, ElementsAre("find F.plugin below " + folder, "stop"));
}

// What is removed, and what is said.

class EarlierCopiesOfOnePlugIn : public EarlierCopiesTest {
  protected:
    EarlierCopiesOfOnePlugIn() { memory.addFile(plugIns + "/X"); }
};

TEST_F(EarlierCopiesOfOnePlugIn, CopiesAtAnyDepthAreRemovedAfterTheSearchHasStopped) {
    addFound("X", folder + "/X");
    addFound("X", folder + "/deep/er/X");
    unInstall();
    EXPECT_THAT(fake.journal,
                ElementsAre("find X below " + folder, "stop", "/bin/rm -fR " + folder + "/X",
                            "wait", "/bin/rm -fR " + folder + "/deep/er/X", "wait"));
    EXPECT_THAT(fake.log.lines,
                ElementsAre("found X at " + folder + "/X", "found X at " + folder + "/deep/er/X"));
    EXPECT_TRUE(memory.exists(folder + "/deep/er"));
    EXPECT_FALSE(engine.run.authDenied);
}

TEST_F(EarlierCopiesOfOnePlugIn, WhatDiffersInAnyWayIsFoundAndSaidAndKept) {
    for (const std::string name : {"x", "X 2", "X copy", " X", "XX"}) {
        addFound("X", folder + "/" + name);
    }
    addFound("X", folder + "/X");
    unInstall();
    EXPECT_THAT(engine.operations(),
                ElementsAre("find X below " + folder, "stop", "/bin/rm -fR " + folder + "/X"));
    EXPECT_THAT(
        fake.log.lines,
        ElementsAre("found x at " + folder + "/x", "found X 2 at " + folder + "/X 2",
                    "found X copy at " + folder + "/X copy", "found  X at " + folder + "/ X",
                    "found XX at " + folder + "/XX", "found X at " + folder + "/X"));
}

TEST_F(EarlierCopiesTest, AWildcardInANameTakesNothingElseAway) {
    memory.addFile(plugIns + "/F*?");
    addFound("F*?", folder + "/F*?");
    addFound("F*?", folder + "/Foreign");
    unInstall();
    EXPECT_FALSE(memory.exists(folder + "/F*?"));
    EXPECT_TRUE(memory.exists(folder + "/Foreign"));
    EXPECT_TRUE(fake.log.has("found Foreign at " + folder + "/Foreign"));
}

TEST_F(EarlierCopiesOfOnePlugIn, WithoutAnEarlierCopyNothingIsRemovedAndNothingSaid) {
    memory.addFile(folder + "/Other");
    unInstall();
    EXPECT_THAT(fake.journal, ElementsAre("find X below " + folder, "stop"));
    EXPECT_THAT(fake.log.lines, IsEmpty());
}

TEST_F(EarlierCopiesOfOnePlugIn, ACopyInsideACopyIsAskedForAndSaidAllTheSame) {
    addFound("X", folder + "/a/X/b/X");
    fake.fileQueries.found["X"].insert(fake.fileQueries.found["X"].begin(), {"X", folder + "/a/X"});
    unInstall();
    EXPECT_THAT(fake.log.lines,
                ElementsAre("found X at " + folder + "/a/X", "found X at " + folder + "/a/X/b/X"));
    EXPECT_FALSE(memory.exists(folder + "/a/X"));
}

TEST_F(EarlierCopiesOfOnePlugIn, ARemovalThatFailsStopsNothing) {
    memory.addFile(plugIns + "/Y");
    addFound("X", folder + "/X");
    addFound("Y", folder + "/Y");
    fake.authorizations.works = [](const auto& command) { return !command.back().ends_with("/X"); };
    unInstall();
    EXPECT_TRUE(memory.exists(folder + "/X"));
    EXPECT_FALSE(memory.exists(folder + "/Y"));
    EXPECT_TRUE(fake.log.has("found X at " + folder + "/X"));
    EXPECT_FALSE(engine.run.authDenied);
}

TEST_F(EarlierCopiesOfOnePlugIn, ALaunchThatFailsWithoutARefusalStopsNothing) {
    addFound("X", folder + "/X");
    addFound("X", folder + "/deep/X");
    refuseFromCommand(fake, 1, -1);
    unInstall();
    EXPECT_THAT(fake.journal, Contains("/bin/rm -fR " + folder + "/deep/X"));
    EXPECT_EQ(fake.log.lines.size(), 2U);
    EXPECT_FALSE(engine.run.authDenied);
}

TEST_F(EarlierCopiesOfOnePlugIn, ARefusalEndsEverythingAtOnce) {
    memory.addFile(plugIns + "/Y");
    addFound("X", folder + "/X");
    addFound("X", folder + "/deep/X");
    addFound("Y", folder + "/Y");
    refuseFromCommand(fake, 1);
    unInstall();
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_THAT(fake.journal,
                ElementsAre("find X below " + folder, "stop", "/bin/rm -fR " + folder + "/X"));
    // What the refusal was about is not said either.
    EXPECT_THAT(fake.log.lines, IsEmpty());
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
    EXPECT_EQ(fake.fileQueries.destroyed, 1);
}

TEST_F(EarlierCopiesOfOnePlugIn, ALaterRefusalKeepsWhatWasDoneBefore) {
    addFound("X", folder + "/X");
    addFound("X", folder + "/deep/X");
    refuseFromCommand(fake, 2);
    unInstall();
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_FALSE(memory.exists(folder + "/X"));
    EXPECT_TRUE(memory.exists(folder + "/deep/X"));
    EXPECT_THAT(fake.log.lines, ElementsAre("found X at " + folder + "/X"));
}

TEST_F(EarlierCopiesOfOnePlugIn, WithoutAnAuthorizationTheFirstRemovalIsRefused) {
    engine.run.setAuthorization(nullptr);
    addFound("X", folder + "/X");
    unInstall();
    EXPECT_TRUE(engine.run.authDenied);
    EXPECT_TRUE(memory.exists(folder + "/X"));
}

// The search.

TEST_F(EarlierCopiesOfOnePlugIn, TheLoopIsTurnedUntilTheSearchHasItsResults) {
    fake.fileQueries.turnsNeeded = 5;
    addFound("X", folder + "/X");
    unInstall();
    EXPECT_EQ(fake.eventLoop.turns, 5);
    EXPECT_FALSE(memory.exists(folder + "/X"));
}

TEST_F(EarlierCopiesOfOnePlugIn, TheLoopIsTurnedOnceForASearchThatHasItsResultsAtOnce) {
    fake.fileQueries.turnsNeeded = 0;
    unInstall();
    EXPECT_EQ(fake.eventLoop.turns, 1);
}

TEST_F(EarlierCopiesOfOnePlugIn, OneQueryServesAllNames) {
    memory.addFile(plugIns + "/Y");
    memory.addFile(autoLayerItems + "/Z");
    unInstall();
    EXPECT_EQ(fake.fileQueries.created, 1);
    EXPECT_EQ(fake.fileQueries.destroyed, 1);
}

// Where.

class EarlierCopiesPathThatIsNoFolder : public EarlierCopiesOfOnePlugIn,
                                        public testing::WithParamInterface<std::string> {};

TEST_P(EarlierCopiesPathThatIsNoFolder, IsNeverSearched) {
    fake.searchPaths.volume = "/Volumes/Other";
    addFound("X", "/X");
    addFound("X", "/Volumes/Other/X");
    unInstall(host(GetParam()));
    EXPECT_EQ(fake.fileQueries.created, 0);
    EXPECT_THAT(fake.journal, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Paths, EarlierCopiesPathThatIsNoFolder,
                         testing::Values("", "/", "///", "My Plug-Ins", "./Plug-Ins", "..",
                                         "/Volumes/Other", "/Volumes/Other/", "/.",
                                         "/Volumes/Other/.", "/Applications/..",
                                         "/Applications/../../Plug-Ins"));

TEST_F(EarlierCopiesOfOnePlugIn, AFolderWithDotsInItsNameIsSearched) {
    unInstall(host("/..My Plug-Ins../a"));
    EXPECT_THAT(fake.journal, Contains("find X below /..My Plug-Ins../a"));
}

TEST_F(EarlierCopiesOfOnePlugIn, APhotoshopIsSearchedOnTheTargetVolumeAndNowhereElse) {
    fake.searchPaths.volume = "/Volumes/Other";
    unInstall(PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CC 2019"));
    EXPECT_THAT(fake.journal,
                ElementsAre("find X below /Volumes/Other/Library/Application Support/Adobe/"
                            "Plug-Ins/CC",
                            "stop"));
}

TEST_F(EarlierCopiesOfOnePlugIn, APickedFolderIsSearchedAsItWasPicked) {
    fake.searchPaths.volume = "/Volumes/Other";
    unInstall(host("/My//Plug-Ins/"));
    EXPECT_THAT(fake.journal, ElementsAre("find X below /My/Plug-Ins", "stop"));
}

TEST_F(EarlierCopiesOfOnePlugIn, AFireworksIsSearchedToo) {
    unInstall(FireworksHostModel(fake.platform, "Adobe Fireworks CS6"));
    EXPECT_THAT(fake.journal,
                ElementsAre("find X below /Applications/Adobe Fireworks CS6/Plug-Ins", "stop"));
}

TEST_F(EarlierCopiesOfOnePlugIn, HostsThatTakeNoPlugInAreNotSearched) {
    unInstall(LightRoomHostModel(fake.platform, "Lightroom 5"));
    unInstall(ApertureHostModel(fake.platform, "Aperture 3"));
    EXPECT_EQ(fake.fileQueries.created, 0);
}

}  // namespace
}  // namespace installer::test

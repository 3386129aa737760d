#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/values/Paths.h"
#include "tests/steps/hosts/HostsControllerScene.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Choosing the folder on the custom install, and what its controls show.
class HostsControllerCustomFolder : public HostsControllerScene {
  protected:
    void answer(const std::string& folder) {
        fake.memory.addFolder(folder);
        fake.folderPanel.answer = folder;
    }
};

// The folder panel.

TEST_F(HostsControllerCustomFolder, ThePanelSaysWhatItIsFor) {
    fake.bundle.tables["Localizable"] = {{"browse_path_title", "Custom install"},
                                         {"browse_path_msg", "Choose a folder"},
                                         {"browse_path_prompt", "Choose"}};
    enterCustomScreen();
    controller.browseButtonPressed(this);
    ASSERT_THAT(fake.folderPanel.requests, SizeIs(1));
    EXPECT_EQ(fake.folderPanel.requests.front().title, "Custom install");
    EXPECT_EQ(fake.folderPanel.requests.front().message, "Choose a folder");
    EXPECT_EQ(fake.folderPanel.requests.front().prompt, "Choose");
}

TEST_F(HostsControllerCustomFolder, ThePanelStartsInTheChosenFolder) {
    remember("/My Plug-Ins");
    enterCustomScreen();
    controller.browseButtonPressed(this);
    EXPECT_EQ(fake.folderPanel.requests.front().startFolder, "/My Plug-Ins");
}

TEST_F(HostsControllerCustomFolder, ThePanelStartsInTheUsersHomeWithoutAFolder) {
    enterCustomScreen();
    controller.browseButtonPressed(this);
    EXPECT_EQ(fake.folderPanel.requests.front().startFolder, "/Users/tester");
}

TEST_F(HostsControllerCustomFolder, ThePanelStartsNowhereForAUserWithoutHome) {
    fake.searchPaths.home.reset();
    enterCustomScreen();
    controller.browseButtonPressed(this);
    EXPECT_EQ(fake.folderPanel.requests.front().startFolder, "");
}

TEST_F(HostsControllerCustomFolder, ACancelledPanelChangesNothing) {
    remember("/My Plug-Ins");
    enterCustomScreen();
    events.clear();
    recordAnnouncements();
    controller.browseButtonPressed(this);
    EXPECT_EQ(controller.customPath(), "/My Plug-Ins");
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(HostsControllerCustomFolder, ChoosingAFolderEnablesContinue) {
    enterCustomScreen();
    ASSERT_FALSE(controller.enableForward());
    answer("/Chosen");
    controller.browseButtonPressed(this);
    EXPECT_EQ(controller.customPath(), "/Chosen");
    EXPECT_EQ(customHost().plugInPath(), "/Chosen");
    EXPECT_TRUE(controller.enableForward());
}

TEST_F(HostsControllerCustomFolder, AChosenFolderIsAnnounced) {
    enterCustomScreen();
    events.clear();
    recordAnnouncements();
    answer("/Chosen");
    controller.browseButtonPressed(this);
    EXPECT_THAT(events, ElementsAre("own will customPath", "will enableForward",
                                    "own did customPath", "did enableForward"));
}

TEST_F(HostsControllerCustomFolder, AChosenFolderIsRememberedWhenTheStepIsLeftOnly) {
    enterCustomScreen();
    answer("/Chosen");
    controller.browseButtonPressed(this);
    EXPECT_THAT(fake.preferences.values, IsEmpty());
}

TEST_F(HostsControllerCustomFolder, WithoutACustomFoldersHostTheChoiceIsDropped) {
    addPhotoshop();
    enter();
    answer("/Chosen");
    controller.browseButtonPressed(this);
    EXPECT_EQ(controller.customPath(), "");
    EXPECT_EQ(fake.folderPanel.requests.front().startFolder, "/Users/tester");
}

// What the panel shows.

TEST_F(HostsControllerCustomFolder, ThePanelShowsFoldersThatAreNoPackages) {
    fake.memory.addFolder("/Plug-Ins/Filters");
    EXPECT_TRUE(controller.panelShouldShowFilename("/Plug-Ins"));
    EXPECT_TRUE(controller.panelShouldShowFilename("/Plug-Ins/Filters"));
}

TEST_F(HostsControllerCustomFolder, ThePanelHidesAFolderThatHoldsContents) {
    fake.memory.addFolder("/Some.app/Contents");
    fake.memory.addFile("/Named/Contents", "a file will do");
    EXPECT_FALSE(controller.panelShouldShowFilename("/Some.app"));
    EXPECT_FALSE(controller.panelShouldShowFilename("/Named"));
}

TEST_F(HostsControllerCustomFolder, OnlyTheExactNameContentsHidesAFolder) {
    fake.memory.addFolder("/Plug-Ins/contents");
    fake.memory.addFolder("/Plug-Ins/Filters/Contents");
    EXPECT_TRUE(controller.panelShouldShowFilename("/Plug-Ins"));
}

TEST_F(HostsControllerCustomFolder, ThePanelHidesFilesAndWhatIsNotThere) {
    fake.memory.addFile("/notes.txt");
    fake.memory.addOther("/fifo");
    EXPECT_FALSE(controller.panelShouldShowFilename("/notes.txt"));
    EXPECT_FALSE(controller.panelShouldShowFilename("/fifo"));
    EXPECT_FALSE(controller.panelShouldShowFilename("/missing"));
    EXPECT_FALSE(controller.panelShouldShowFilename(""));
}

/// A disk on which "/Link" leads to "/Plug-Ins", "/Packaged" to "/Some.app", and other links
/// nowhere.
class DiskWithLinks : public MemoryFileManager {
  public:
    DiskWithLinks() {
        addFolder("/Plug-Ins");
        addFolder("/Some.app/Contents");
        addFile("/notes.txt");
        addLink("/Link", "/Plug-Ins");
        addLink("/Packaged", "/Some.app");
        addLink("/Notes", "/notes.txt");
        addLink("/Dangling", "/missing");
    }
    bool exists(const std::string& path) override {
        const Node* parent = node(parentPath(path));
        if (parent == nullptr || parent->type != FileType::symbolicLink) {
            return MemoryFileManager::exists(path);
        }
        return MemoryFileManager::exists(joinPath(parent->contents, lastPathComponent(path)));
    }
};

TEST_F(HostsControllerCustomFolder, ThePanelShowsALinkAsWhatItLeadsTo) {
    DiskWithLinks disk;
    WindowPlatform platform{
        {disk, fake.fileQueries, fake.authorizations, fake.processes, fake.eventLoop,
         fake.preferences, fake.bundle, fake.bundles, fake.searchPaths, fake.applications,
         fake.alerts, fake.log, fake.clock, fake.notifications},
        fake.interfaces,
        fake.folderPanel,
        fake.workspace,
        fake.clipboard};
    const HostsController step(platform);
    EXPECT_TRUE(step.panelShouldShowFilename("/Link"));
    EXPECT_FALSE(step.panelShouldShowFilename("/Packaged"));
    EXPECT_FALSE(step.panelShouldShowFilename("/Notes"));
    EXPECT_FALSE(step.panelShouldShowFilename("/Dangling"));
}

TEST_F(HostsControllerCustomFolder, ThePanelAsksTheStepWhatItShows) {
    fake.memory.addFolder("/Plug-Ins");
    fake.memory.addFolder("/Some.app/Contents");
    enterCustomScreen();
    controller.browseButtonPressed(this);
    const auto& shouldShow = fake.folderPanel.requests.front().shouldShow;
    ASSERT_TRUE(shouldShow);
    EXPECT_TRUE(shouldShow("/Plug-Ins"));
    EXPECT_FALSE(shouldShow("/Some.app"));
}

// The options.

struct ForwardRow {
    std::string name;
    bool plugIn = false;
    bool scriptsAndPanels = false;
    std::string folder;
    bool enabled = false;
};

class HostsControllerCustomFolderForwardButton : public HostsControllerScene,
                                                 public testing::WithParamInterface<ForwardRow> {};

TEST_P(HostsControllerCustomFolderForwardButton, NeedsSomethingToInstallAndAFolderForThePlugIn) {
    enterCustomScreen();
    customHost().setPlugInPath(GetParam().folder);
    controller.setInstallPluginForCustomInstall(GetParam().plugIn);
    controller.setInstallScriptsAndPanelsChosen(GetParam().scriptsAndPanels);
    EXPECT_EQ(controller.enableForward(), GetParam().enabled);
}

INSTANTIATE_TEST_SUITE_P(OnTheCustomInstall, HostsControllerCustomFolderForwardButton,
                         testing::Values(ForwardRow{"PlugInAndFolder", true, false, "/P", true},
                                         ForwardRow{"PlugInWithoutFolder", true, false, "", false},
                                         ForwardRow{"NothingButAFolder", false, false, "/P", false},
                                         ForwardRow{"Nothing", false, false, "", false},
                                         ForwardRow{"ScriptsOnly", false, true, "", true},
                                         ForwardRow{"AllWithoutFolder", true, true, "", false},
                                         ForwardRow{"AllWithFolder", true, true, "/P", true}),
                         [](const auto& row) { return row.param.name; });

TEST_F(HostsControllerCustomFolder, TheOptionsDoNotMatterOnTheList) {
    addPhotoshop();
    enter();
    controller.setInstallPluginForCustomInstall(false);
    EXPECT_TRUE(controller.enableForward());
}

TEST_F(HostsControllerCustomFolder, OnlyThePlugInIsChosenAtFirst) {
    EXPECT_TRUE(controller.installPluginForCustomInstall());
    EXPECT_FALSE(controller.installScriptsAndPanelsChosen());
}

TEST_F(HostsControllerCustomFolder, WithoutThePlugInNoFolderIsShown) {
    remember("/My Plug-Ins");
    enterCustomScreen();
    controller.setInstallPluginForCustomInstall(false);
    EXPECT_EQ(controller.customPath(), "");
    EXPECT_FALSE(controller.enableForward());
    controller.setInstallPluginForCustomInstall(true);
    EXPECT_EQ(controller.customPath(), "/My Plug-Ins");
}

TEST_F(HostsControllerCustomFolder, ChoosingThePlugInIsAnnouncedInOrder) {
    enterCustomScreen();
    events.clear();
    recordAnnouncements();
    controller.setInstallPluginForCustomInstall(false);
    EXPECT_THAT(events, ElementsAre("will enableForward", "did enableForward",
                                    "own will customPath", "own did customPath"));
}

TEST_F(HostsControllerCustomFolder, ChoosingScriptsAndPanelsIsAnnounced) {
    enterCustomScreen();
    events.clear();
    recordAnnouncements();
    controller.setInstallScriptsAndPanelsChosen(true);
    EXPECT_THAT(events, ElementsAre("will enableForward", "did enableForward"));
}

TEST_F(HostsControllerCustomFolder, OptionsBeforeTheFirstEntryAreKept) {
    controller.setInstallPluginForCustomInstall(false);
    controller.checkboxClicked(this);
    enterCustomScreen();
    EXPECT_FALSE(controller.installPluginForCustomInstall());
}

TEST_F(HostsControllerCustomFolder, NoHostEverOffersItsScriptsAndPanels) {
    enterCustomScreen();
    controller.setInstallScriptsAndPanelsChosen(true);
    EXPECT_THAT(controller.scriptsOrPanelsHosts(), IsEmpty());
    EXPECT_FALSE(controller.scriptsOrPanelsHostsExsist());
}

// What the controls see.

TEST_F(HostsControllerCustomFolder, TheControlsFindTheirProperties) {
    fake.bundle.tables["Localizable"] = {{"custom_install_label_path", "Folder:"},
                                         {"custom_install_browse_button", "Browse"},
                                         {"custom_install_button", "Custom"},
                                         {"custom_install_panels_checkbox", "Panels"},
                                         {"custom_install_host_label", "Of which host"}};
    model = std::make_shared<HostsModel>(fake.platform);
    remember("/My Plug-Ins");
    enterCustomScreen();
    const auto text = [this](std::string_view name) { return controller.valueForProperty(name); };
    EXPECT_EQ(text("customPath"), PropertyValue(std::string("/My Plug-Ins")));
    EXPECT_EQ(text("customInstallPathLabelText"), PropertyValue(std::string("Folder:")));
    EXPECT_EQ(text("customInstallBrowseButtonText"), PropertyValue(std::string("Browse")));
    EXPECT_EQ(text("customInstallCheckBoxText"), PropertyValue(std::string("Panels")));
    EXPECT_EQ(text("customInstallHostsExplanationText"),
              PropertyValue(std::string("Of which host")));
    EXPECT_EQ(text("installScriptsAndPanelsChosen"), PropertyValue(false));
    EXPECT_EQ(text("installPluginForCustomInstall"), PropertyValue(true));
    EXPECT_EQ(text("scriptsOrPanelsHosts"), PropertyValue(std::vector<ListRow>()));
    EXPECT_EQ(text("scriptsOrPanelsHostsExsist"), PropertyValue(false));
    EXPECT_EQ(controller.customInstallButtonText(), "Custom");
}

TEST_F(HostsControllerCustomFolder, TheTextsAreEmptyWhileTheStepIsNotCurrent) {
    EXPECT_EQ(controller.customInstallPathLabelText(), "");
    EXPECT_EQ(controller.customInstallBrowseButtonText(), "");
    EXPECT_EQ(controller.customInstallButtonText(), "");
    EXPECT_EQ(controller.customInstallCheckBoxText(), "");
    EXPECT_EQ(controller.customInstallHostsExplanationText(), "");
    EXPECT_EQ(controller.customPath(), "");
}

TEST_F(HostsControllerCustomFolder, TheCheckBoxesSetTheOptions) {
    enterCustomScreen();
    controller.setValueForProperty("installPluginForCustomInstall", false);
    controller.setValueForProperty("installScriptsAndPanelsChosen", true);
    EXPECT_FALSE(controller.installPluginForCustomInstall());
    EXPECT_TRUE(controller.installScriptsAndPanelsChosen());
}

TEST_F(HostsControllerCustomFolder, TheBrowseButtonOpensThePanel) {
    enterCustomScreen();
    controller.performAction("browseButtonPressed", this);
    EXPECT_THAT(fake.folderPanel.requests, SizeIs(1));
}

TEST_F(HostsControllerCustomFolder, TheControlsHearOfChangesOnceTheyAreDone) {
    enterCustomScreen();
    std::vector<std::string> heard;
    const Subscription subscription = controller.observeProperties([&](std::string_view property) {
        if (property == "customFolderNote") return;
        heard.push_back(std::string(property) + " = " + controller.customPath());
    });
    answer("/Chosen");
    controller.browseButtonPressed(this);
    controller.undoCustomScreen();
    EXPECT_THAT(heard, ElementsAre("customPath = /Chosen", "customPath = ", "customPath64 = "));
}

TEST_F(HostsControllerCustomFolder, WhatMayChangeIsAnnouncedUnlessOnlyItsOwnControlChangesIt) {
    std::set<std::string> read;
    const Subscription subscription =
        controller.observeProperties([&](std::string_view property) { read.emplace(property); });
    enterCustomScreen();
    answer("/Chosen");
    controller.browseButtonPressed(this);
    controller.setValueForProperty("installPluginForCustomInstall", false);
    controller.setValueForProperty("installScriptsAndPanelsChosen", true);
    controller.undoCustomScreen();
    std::set<std::string> notAnnounced;
    for (const auto& property : controller.boundProperties()) {
        const bool isAnnounced = read.erase(property.name) > 0;
        EXPECT_FALSE(property.isConstant && isAnnounced) << property.name;
        if (!property.isConstant && !isAnnounced) notAnnounced.insert(property.name);
    }
    EXPECT_THAT(notAnnounced,
                ElementsAre("installPluginForCustomInstall", "installScriptsAndPanelsChosen"));
    EXPECT_THAT(read, ElementsAre("customPath64")) << "announced with \"customPath\", never shown";
}

TEST_F(HostsControllerCustomFolder, TheControlsStayBoundWhenTheStepIsLeft) {
    enterCustomScreen();
    controller.didProceed(1);
    const auto& loaded = fake.interfaces.loaded["CustomInstall"].front();
    EXPECT_EQ(loaded.use_count(), 2) << "the loader's own reference, and the loaded interface";
}

// What the page says of the folder

class HostsControllerCustomFolderNote : public HostsControllerScene {
  protected:
    HostsControllerCustomFolderNote() {
        fake.bundle.tables["Localizable"]["custom_folder_missing"] = "Not there";
    }
    std::string note() {
        const PropertyValue value = controller.valueForProperty("customFolderNote");
        const auto* text = std::get_if<std::string>(&value);
        return text != nullptr ? *text : "no such property";
    }
};

TEST_F(HostsControllerCustomFolderNote, SaysThatARememberedFolderIsGone) {
    remember("/My Plug-Ins");
    enterCustomScreen();
    EXPECT_EQ(note(), "Not there");
}

TEST_F(HostsControllerCustomFolderNote, SaysThatNothingCanBePutBehindALinkThatIsNotFollowed) {
    fake.bundle.tables["Localizable"]["host_link_of_another_fmt"] = "%@ (foreign)";
    remember("/Their/My Plug-Ins");
    fake.authorizations.linkRefusals["/Their/My Plug-Ins"] = LinkRefusal::ofAnotherUser;
    enterCustomScreen();
    EXPECT_EQ(note(), "My Plug-Ins (foreign)");
}

TEST_F(HostsControllerCustomFolderNote, IsEmptyForAFolderThatIsThere) {
    remember("/My Plug-Ins");
    fake.memory.addFolder("/My Plug-Ins");
    enterCustomScreen();
    EXPECT_EQ(note(), "");
}

TEST_F(HostsControllerCustomFolderNote, IsEmptyForAFolderThatTheUserMayNotList) {
    remember("/My Plug-Ins");
    fake.memory.addFolder("/My Plug-Ins");
    fake.memory.makeUnlistable("/My Plug-Ins");
    enterCustomScreen();
    EXPECT_EQ(note(), "");
}

TEST_F(HostsControllerCustomFolderNote, IsEmptyWhileNoFolderIsChosen) {
    enterCustomScreen();
    EXPECT_EQ(note(), "");
}

TEST_F(HostsControllerCustomFolderNote, FollowsTheChoiceOfAnotherFolder) {
    remember("/My Plug-Ins");
    fake.memory.addFolder("/Other");
    fake.folderPanel.answer = "/Other";
    enterCustomScreen();
    controller.browseButtonPressed(nullptr);
    EXPECT_EQ(note(), "");
}

}  // namespace

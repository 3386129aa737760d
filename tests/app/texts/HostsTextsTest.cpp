#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

class HostsTextsTest : public WizardTest {
  protected:
    HostsTextsTest() {
        fake.bundle.tables["Localizable"]["no_photoshop_selected"] = "Only the program";
        addPhotoshop("Adobe Photoshop CS6");
    }

    void tick(std::size_t row, bool ticked) { wizard->setRowChecked("foundHosts", row, ticked); }
    std::string note() { return textOf("selectionNote"); }
};

TEST_F(HostsTextsTest, ASelectedPhotoshopNeedsNoNote) {
    start();
    goTo(1);
    EXPECT_EQ(note(), "");
}

TEST_F(HostsTextsTest, WithoutASelectionTheNoteSaysThatOnlyTheProgramIsInstalled) {
    addPhotoshop("Adobe Photoshop CC");
    start();
    goTo(1);
    tick(0, false);
    EXPECT_EQ(note(), "");
    tick(1, false);
    EXPECT_EQ(note(), "Only the program");
}

TEST_F(HostsTextsTest, TheNoteIsReadAgainWhenARowIsTicked) {
    start();
    goTo(1);
    recordRefreshes();
    tick(0, false);
    EXPECT_THAT(refreshed, testing::Contains("selectionNote"));
}

TEST_F(HostsTextsTest, WhoeverTicksAPhotoshopThatTakesNothingIsWarned) {
    fake.bundle.tables["Localizable"]["refused_host_selected_fmt"] = "Not into %@";
    fake.memory.addFile("/Installer.app/Contents/Resources/files/PHOTOSHOP/run.jsx");
    addPhotoshop("Adobe Photoshop CC");
    fake.authorizations.linkRefusals["/Applications/Adobe Photoshop CS6"] =
        LinkRefusal::ofAnotherUser;
    start();
    goTo(1);
    EXPECT_EQ(note(), "");
    tick(1, true);
    EXPECT_EQ(note(), "Not into Adobe Photoshop CS6");
}

TEST_F(HostsTextsTest, ACustomFolderNeedsNoNote) {
    fake.preferences.values[{"com.quarrytone.installer", "customPath"}] = "/My Plug-Ins";
    start();
    goTo(1);
    wizard->subViewButtonPress(nullptr);
    EXPECT_EQ(note(), "");
}

TEST_F(HostsTextsTest, AFolderPageThatCannotBeLoadedLeavesNothingToInstallInto) {
    fake.interfaces.unloadable = {"CustomInstall"};
    start();
    goTo(1);
    wizard->subViewButtonPress(nullptr);
    ASSERT_THAT(visibleViews(), ElementsAre("hostsView"));
    EXPECT_EQ(note(), "Only the program");
}

// Nothing was found

class HostsTextsWithoutPhotoshop : public WizardTest {
  protected:
    HostsTextsWithoutPhotoshop() {
        fake.bundle.tables["Localizable"].insert({{"select_host_instructions", "Select each"},
                                                  {"no_photoshop_found", "None found"},
                                                  {"no_photoshop_selected", "Only the program"},
                                                  {"custom_install_instructions", "Into it"}});
        start();
        goTo(1);
    }
};

TEST_F(HostsTextsWithoutPhotoshop, TheFolderPageSaysThatNoneWasFound) {
    ASSERT_TRUE(view("hostsView").hidden);
    EXPECT_EQ(textOf("pageText"), "None found\n\nInto it");
}

TEST_F(HostsTextsWithoutPhotoshop, TheEmptyListSaysSoInPlaceOfItsInstructions) {
    wizard->previousView(nullptr);
    ASSERT_FALSE(view("hostsView").hidden);
    EXPECT_EQ(textOf("pageText"), "None found");
    EXPECT_EQ(textOf("selectionNote"), "Only the program");
}

// What was found and is not offered

class HostsTextsNotOffered : public WizardTest {
  protected:
    HostsTextsNotOffered() {
        fake.bundle.tables["Localizable"].insert({{"not_offered_fmt", "Not: %@"},
                                                  {"not_offered_too_old", "%@ old"},
                                                  {"not_offered_elements", "%@ elements"},
                                                  {"not_offered_folder_missing", "%@ gone"},
                                                  {"not_offered_unreadable", "%@ unreadable"}});
    }

    std::string text() {
        start();
        return textOf("notOfferedText");
    }
    void removeFolderOf(const std::string& name) {
        ASSERT_FALSE(fake.memory.remove("/Applications/" + name));
    }
    long timesLogged(const std::string& line) {
        return std::count(fake.log.lines.begin(), fake.log.lines.end(), line);
    }

    const std::string preferences = "/Users/tester/Library/Preferences/";
};

TEST_F(HostsTextsNotOffered, IsEmptyWhenEverythingIsOffered) {
    addPhotoshop("Adobe Photoshop CS6");
    EXPECT_EQ(text(), "");
}

TEST_F(HostsTextsNotOffered, NamesAnOlderRelease) {
    addPhotoshop("Adobe Photoshop CS5");
    EXPECT_EQ(text(), "Not: Adobe Photoshop CS5 old");
    EXPECT_EQ(timesLogged("Not offered: Adobe Photoshop CS5: it is too old"), 1);
}

TEST_F(HostsTextsNotOffered, NamesElements) {
    addPhotoshop("Adobe Photoshop Elements 2018");
    EXPECT_EQ(text(), "Not: Adobe Photoshop Elements 2018 elements");
}

TEST_F(HostsTextsNotOffered, NamesAReleaseWhoseFolderIsMissing) {
    addPhotoshop("Adobe Photoshop CC");
    removeFolderOf("Adobe Photoshop CC");
    fake.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings");
    EXPECT_EQ(text(), "Not: Adobe Photoshop CC gone, Adobe Photoshop CC 2019 gone");
}

TEST_F(HostsTextsNotOffered, NamesAReleaseWhosePathsFileSaysNothing) {
    fake.memory.addFile(preferences + "Adobe Photoshop CC Paths", "short");
    EXPECT_EQ(text(), "Not: Adobe Photoshop CC unreadable");
    EXPECT_EQ(timesLogged("Not offered: Adobe Photoshop CC: its paths file cannot be read"), 1);
}

TEST_F(HostsTextsNotOffered, NamesEachReleaseOnceAndNoneThatIsOfferedThroughAnotherFile) {
    fake.memory.addFolder("/Applications/Adobe Photoshop CC 2019/Photoshop.app");
    fake.memory.addFile(preferences + "Adobe Photoshop CC 2019 Paths", "short");
    fake.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings");
    addPhotoshop("Adobe Photoshop CC 2020");
    removeFolderOf("Adobe Photoshop CC 2020");
    fake.memory.addFile(preferences + "Adobe Photoshop CC 2020 Settings");
    EXPECT_EQ(text(), "Not: Adobe Photoshop CC 2020 gone");
}

}  // namespace
}  // namespace installer::test

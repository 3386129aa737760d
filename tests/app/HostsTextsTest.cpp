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

}  // namespace
}  // namespace installer::test

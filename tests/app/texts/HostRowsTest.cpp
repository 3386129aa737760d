#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/texts/HostRows.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class HostRowsTest : public WizardTest {
  protected:
    std::vector<ListRow> rows() { return valueOf<std::vector<ListRow>>("foundHosts"); }

    std::vector<std::string> selectedNames() {
        std::vector<std::string> names;
        for (const HostModel& host : wizard->selectedHosts()) names.push_back(host.hostName());
        return names;
    }

    std::optional<std::size_t> selectedRow() { return window().lists["foundHostsController"]->row; }

    HostModel customHost() { return UnknownHostModel(fake.platform, "/My Plug-Ins"); }

    ListRow rowOf(const HostModel& host) { return hostRows({host}, fake.windowPlatform).front(); }
};

TEST_F(HostRowsTest, APhotoshopShowsItsNameItsFolderAndItsIcon) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.icons["/Applications/Adobe Photoshop CS6"] = Image{"/icon"};
    start();
    EXPECT_THAT(rows(), ElementsAre(ListRow{.title = "Adobe Photoshop CS6",
                                            .detail = "/Applications/Adobe Photoshop CS6",
                                            .icon = {"/icon"},
                                            .checked = true}));
}

TEST_F(HostRowsTest, TwoRowsOfOneHostNameTheFilesThatTheyCameFrom) {
    fake.bundle.tables["Localizable"]["host_from_file_fmt"] = "%1$@ by %2$@";
    fake.memory.addFolder("/Applications/Adobe Photoshop CC 2019/Photoshop.app");
    const std::string preferences = "/Users/tester/Library/Preferences/";
    fake.memory.addFile(
        preferences + "Adobe Photoshop CC 2019 Paths",
        std::string("/Applications/Adobe Photoshop CC 2019") + std::string(1, '\0'));
    fake.memory.addFile(preferences + "Adobe Photoshop CC 2019 Settings");
    addPhotoshop("Adobe Photoshop CS6");
    start();
    ASSERT_THAT(rows(), SizeIs(3));
    EXPECT_EQ(rows()[0].detail, "/Applications/Adobe Photoshop CS6");
    EXPECT_EQ(rows()[1].detail,
              "/Applications/Adobe Photoshop CC 2019 by Adobe Photoshop CC 2019 Paths");
    EXPECT_EQ(rows()[2].detail,
              "/Applications/Adobe Photoshop CC 2019 by Adobe Photoshop CC 2019 Settings");
}

TEST_F(HostRowsTest, APhotoshopBehindALinkThatIsNotFollowedSaysSoAndIsNotTicked) {
    fake.bundle.tables["Localizable"]["host_link_of_another_fmt"] = "%@ (foreign)";
    fake.bundle.tables["Localizable"]["host_link_into_system_fmt"] = "%@ (of the system)";
    fake.memory.addFile("/Installer.app/Contents/Resources/files/PHOTOSHOP/run.jsx");
    for (const char* name :
         {"Adobe Photoshop CS6", "Adobe Photoshop CC", "Adobe Photoshop CC 2017"}) {
        addPhotoshop(name);
    }
    fake.authorizations.linkRefusals = {
        {"/Applications/Adobe Photoshop CS6", LinkRefusal::ofAnotherUser},
        {"/Applications/Adobe Photoshop CC 2017", LinkRefusal::intoSystem}};
    start();
    ASSERT_THAT(rows(), SizeIs(3));
    EXPECT_EQ(rows()[0].detail, "/Applications/Adobe Photoshop CC");
    EXPECT_EQ(rows()[1].detail, "/Applications/Adobe Photoshop CS6 (foreign)");
    EXPECT_EQ(rows()[2].detail, "/Applications/Adobe Photoshop CC 2017 (of the system)");
    EXPECT_THAT(selectedNames(), ElementsAre("Adobe Photoshop CC"));
}

TEST_F(HostRowsTest, TickingAPhotoshopEndsTheCustomInstall) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.preferences.values[{"com.quarrytone.installer", "customPath"}] = "/My Plug-Ins";
    fake.workspace.running = {"Photoshop"};
    start();
    goTo(1);
    wizard->subViewButtonPress(nullptr);
    goTo(1);
    wizard->previousView(nullptr);
    ASSERT_THAT(visibleViews(), ElementsAre("hostsView"));
    ASSERT_THAT(rows(), SizeIs(2));
    ASSERT_TRUE(rows()[1].checked);
    wizard->setRowChecked("foundHosts", 0, true);
    EXPECT_TRUE(rows()[0].checked);
    EXPECT_FALSE(rows()[1].checked);
    // The page of the folder says that it is installed into.
    wizard->subViewButtonPress(nullptr);
    EXPECT_FALSE(rows()[0].checked);
    EXPECT_TRUE(rows()[1].checked);
    goTo(1);
    wizard->previousView(nullptr);
    wizard->setRowChecked("foundHosts", 0, true);
    // Whoever ticks it again wants both.
    wizard->setRowChecked("foundHosts", 1, true);
    EXPECT_TRUE(rows()[0].checked);
    EXPECT_TRUE(rows()[1].checked);
}

TEST_F(HostRowsTest, RowsStandInTheOrderOfTheHosts) {
    addPhotoshop("Adobe Photoshop CC 2017");
    addPhotoshop("Adobe Photoshop CS6");
    start();
    ASSERT_THAT(rows(), SizeIs(2));
    EXPECT_EQ(rows()[0].title, "Adobe Photoshop CS6");
    EXPECT_EQ(rows()[1].title, "Adobe Photoshop CC 2017");
}

TEST_F(HostRowsTest, APhotoshopWithoutAnApplicationShowsItsPlugInFolder) {
    const HostModel host =
        PhotoshopHostModel::initWithHostName(fake.platform, "Adobe Photoshop CS6");
    const auto* photoshop = host.as<PhotoshopHostModel>();
    ASSERT_EQ(photoshop->appPath(), "");
    EXPECT_EQ(rowOf(host).detail, photoshop->plugInPath());
}

TEST_F(HostRowsTest, ACustomFolderShowsTheFolder) {
    fake.bundle.tables["Localizable"]["custom_path"] = "A folder of your own";
    const ListRow row = rowOf(customHost());
    EXPECT_EQ(row.title, "A folder of your own");
    EXPECT_EQ(row.detail, "/My Plug-Ins");
    EXPECT_FALSE(row.checked);
}

TEST_F(HostRowsTest, ACustomFolderThatWasNotPickedYetShowsNone) {
    fake.workspace.icons[""] = Image{"/no icon for no folder"};
    const ListRow row = rowOf(UnknownHostModel(fake.platform, ""));
    EXPECT_EQ(row.detail, "");
    EXPECT_EQ(row.icon, Image());
}

TEST_F(HostRowsTest, OtherKindsShowTheirApplication) {
    const HostModel lightroom = LightRoomHostModel(fake.platform, "Adobe Lightroom 6");
    EXPECT_EQ(rowOf(lightroom).title, "Adobe Lightroom 6");
    EXPECT_EQ(rowOf(lightroom).detail, lightroom.as<LightRoomHostModel>()->appPath());
    EXPECT_TRUE(rowOf(lightroom).checked);
}

TEST_F(HostRowsTest, AKindThatHasNoSelectionIsUncheckedAndShowsItsPlugInFolder) {
    const HostModel fireworks = FireworksHostModel(fake.platform, "Adobe Fireworks CS6");
    ASSERT_EQ(fireworks.booleanNamed("hostIsSelected"), std::nullopt);
    EXPECT_FALSE(rowOf(fireworks).checked);
    EXPECT_EQ(rowOf(fireworks).detail, fireworks.as<FireworksHostModel>()->plugInPath());
}

TEST_F(HostRowsTest, TickingARowSelectsItsHost) {
    addPhotoshop("Adobe Photoshop CS6");
    addPhotoshop("Adobe Photoshop CC 2017");
    start();
    goTo(1);
    EXPECT_THAT(selectedNames(), ElementsAre("Adobe Photoshop CS6", "Adobe Photoshop CC 2017"));
    wizard->setRowChecked("foundHosts", 0, false);
    EXPECT_THAT(selectedNames(), ElementsAre("Adobe Photoshop CC 2017"));
    EXPECT_FALSE(rows()[0].checked);
    EXPECT_TRUE(rows()[1].checked);
    wizard->setRowChecked("foundHosts", 0, true);
    EXPECT_THAT(selectedNames(), SizeIs(2));
}

TEST_F(HostRowsTest, TickingARowIsToldToTheHostSelection) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(1);
    wizard->setIsCustomInstallAllowed(true);
    wizard->setIsCustomInstallChosen(true);
    recordAnnouncements();
    events.clear();
    wizard->setRowChecked("foundHosts", 0, false);
    EXPECT_THAT(events, ElementsAre("will enableForward", "did enableForward"));
    EXPECT_FALSE(wizard->isCustomInstallChosen());
    EXPECT_FALSE(wizard->isCustomInstallAllowed());
}

TEST_F(HostRowsTest, TickingARowThatDoesNotExistDoesNothing) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(1);
    recordAnnouncements();
    events.clear();
    wizard->setRowChecked("foundHosts", 1, false);
    wizard->setRowChecked("failedItems", 0, true);
    EXPECT_THAT(selectedNames(), SizeIs(1));
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(HostRowsTest, AnAddedCustomHostIsAnnouncedListedAndSelected) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    recordAnnouncements();
    std::vector<std::size_t> counts;
    const Subscription handle = wizard->observe([&](Observable::Moment, std::string_view) {
        counts.push_back(wizard->foundHosts().size());
    });
    const HostModel custom = customHost();
    wizard->customHostAdded(custom);
    EXPECT_THAT(events, ElementsAre("will foundHosts", "did foundHosts"));
    EXPECT_THAT(counts, ElementsAre(1, 2));
    EXPECT_EQ(wizard->foundHosts().back(), custom);
    EXPECT_EQ(selectedRow(), 1U);
}

TEST_F(HostRowsTest, ARemovedCustomHostIsAnnouncedAndTheSelectionLeftAlone) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    const HostModel custom = customHost();
    wizard->customHostAdded(custom);
    recordAnnouncements();
    wizard->customHostRemoved(custom);
    EXPECT_THAT(events, ElementsAre("will foundHosts", "did foundHosts"));
    EXPECT_THAT(wizard->foundHosts(), SizeIs(1));
    EXPECT_EQ(selectedRow(), 1U);
}

TEST_F(HostRowsTest, AnAddedHostThatIsNotOfferedLeavesNoRowSelected) {
    start();
    const HostModel absent = FireworksHostModel(fake.platform, "Adobe Fireworks CS6");
    wizard->customHostAdded(absent);
    EXPECT_THAT(wizard->foundHosts(), IsEmpty());
    EXPECT_EQ(selectedRow(), 0U) << "a row that does not exist selects none";
}

TEST_F(HostRowsTest, SelectedHostsAreNoneWhenOneCannotBeAsked) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    ASSERT_THAT(wizard->selectedHosts(), Not(IsEmpty()));
    fake.memory.addFolder("/Applications/Adobe Fireworks CS6/Plug-Ins");
    wizard->customHostAdded(FireworksHostModel(fake.platform, "Adobe Fireworks CS6"));
    EXPECT_THAT(wizard->selectedHosts(), IsEmpty());
    EXPECT_THAT(rows(), IsEmpty());
}

}  // namespace
}  // namespace installer::test

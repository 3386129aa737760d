#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/steps/hosts/HostsControllerScene.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

class HostsControllerTest : public HostsControllerScene {};

// Entering.

TEST_F(HostsControllerTest, ShowsTheListOfSeveralHosts) {
    addPhotoshop("Adobe Photoshop CC 2019");
    addPhotoshop("Adobe Photoshop 2020");
    enter();
    expectHostList();
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(HostsControllerTest, ShowsTheListOfOneDiscoveredHost) {
    addPhotoshop();
    main.customInstallAllowed = true;
    main.customInstallIsRecommended = true;
    enter();
    expectHostList();
    EXPECT_EQ(timesLoaded(), 0U);
}

TEST_F(HostsControllerTest, PassesByItselfWithoutHostsAndWithoutCustomInstall) {
    enter();
    EXPECT_THAT(events, ElementsAre("next view"));
    EXPECT_EQ(main.nextViewSender, &controller);
    EXPECT_TRUE(list->hidden);
    EXPECT_EQ(timesLoaded(), 0U);
}

TEST_F(HostsControllerTest, PassesForwardAlsoWhenTheUserComesBack) {
    enter(-1);
    EXPECT_THAT(events, ElementsAre("next view"));
}

TEST_F(HostsControllerTest, HidesTheListAlsoWhenItWasLeftWhileItPassed) {
    auto view = std::make_shared<FakeView>();
    const std::weak_ptr<FakeView> released = view;
    std::shared_ptr<FakeView> kept;
    main.onNextView = [&] {
        controller.didProceed(1);
        kept = released.lock();
        ASSERT_NE(kept, nullptr);
        kept->hidden = false;
    };
    controller.didEnterWithModel(model, std::move(view), &main, 1);
    EXPECT_TRUE(kept->hidden);
    kept.reset();
    EXPECT_TRUE(released.expired());
}

struct OfferedRow {
    std::string name;
    bool allowed = false;
    bool recommended = false;
};

class HostsControllerWithoutHosts : public HostsControllerScene,
                                    public testing::WithParamInterface<OfferedRow> {};

TEST_P(HostsControllerWithoutHosts, OpensOnTheCustomInstallWithTheRememberedFolder) {
    main.customInstallAllowed = GetParam().allowed;
    main.customInstallIsRecommended = GetParam().recommended;
    remember("/My Plug-Ins");
    enter();
    expectCustomScreen();
    EXPECT_EQ(controller.customPath(), "/My Plug-Ins");
    EXPECT_THAT(events, ElementsAre("custom host added"));
    EXPECT_TRUE(main.customInstallChosen);
    EXPECT_TRUE(controller.enableForward());
}

INSTANTIATE_TEST_SUITE_P(Offered, HostsControllerWithoutHosts,
                         testing::Values(OfferedRow{"Allowed", true, false},
                                         OfferedRow{"Recommended", false, true},
                                         OfferedRow{"Both", true, true}),
                         [](const auto& row) { return row.param.name; });

TEST_F(HostsControllerTest, OpensOnTheCustomInstallWithoutAFolderWhenNoneIsRemembered) {
    main.customInstallAllowed = true;
    enter();
    expectCustomScreen();
    EXPECT_EQ(controller.customPath(), "");
    EXPECT_FALSE(controller.enableForward());
}

TEST_F(HostsControllerTest, ComesBackToTheCustomInstallWithItsOnlyHost) {
    main.customInstallAllowed = true;
    enter();
    customHost().setPlugInPath("/Chosen");
    controller.didProceed(1);
    EXPECT_TRUE(customView()->hidden);
    events.clear();
    enter(-1);
    expectCustomScreen();
    EXPECT_EQ(controller.customPath(), "/Chosen");
    EXPECT_THAT(events, IsEmpty());
    EXPECT_EQ(timesLoaded(), 1U);
}

TEST_F(HostsControllerTest, ComesBackToTheCustomInstallWithAFolderAfterItWasUndone) {
    main.customInstallAllowed = true;
    remember("/My Plug-Ins");
    enter();
    controller.undoCustomScreen();
    controller.didProceed(-1);
    events.clear();
    enter();
    expectCustomScreen();
    EXPECT_EQ(controller.customPath(), "/My Plug-Ins");
    EXPECT_THAT(events, ElementsAre("custom host added"));
    EXPECT_EQ(timesLoaded(), 1U);
}

TEST_F(HostsControllerTest, ComesBackToTheListWhenThereAreOtherHosts) {
    enterCustomScreen();
    controller.didProceed(1);
    enter(-1);
    expectHostList();
    EXPECT_TRUE(isSelected(main.found.back()));
    EXPECT_EQ(main.found.size(), 2U);
}

TEST_F(HostsControllerTest, ShowsTheListWhereverTheCustomFolderStandsAmongOtherHosts) {
    main.found = {UnknownHostModel(fake.platform, "/Chosen")};
    addPhotoshop();
    enter();
    expectHostList();
}

// Without a description of the custom install.

TEST_F(HostsControllerTest, StaysOnTheListWhenTheCustomInstallCannotBeLoadedAtEntry) {
    main.customInstallAllowed = true;
    fake.interfaces.unloadable.insert("CustomInstall");
    enter();
    expectHostList();
    EXPECT_TRUE(controller.enableForward());
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
}

TEST_F(HostsControllerTest, TriesToLoadTheCustomInstallAnewForItsOwnHost) {
    main.customInstallAllowed = true;
    fake.interfaces.unloadable.insert("CustomInstall");
    enter();
    controller.didProceed(1);
    fake.interfaces.unloadable.clear();
    events.clear();
    enter(-1);
    expectCustomScreen();
    EXPECT_THAT(events, IsEmpty());
}

// The buttons.

TEST_F(HostsControllerTest, NeverVetoesAMove) {
    main.customInstallAllowed = true;
    enter();
    ASSERT_FALSE(controller.enableForward());
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_TRUE(controller.canProceed(-1));
}

TEST_F(HostsControllerTest, GoesOnFromTheListWithoutASelectedHost) {
    const HostModel host = addPhotoshop();
    host.setHostIsSelected(false);
    enter();
    EXPECT_TRUE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
}

// Leaving.

TEST_F(HostsControllerTest, LeavingHidesTheListAndLetsGoOfItsModel) {
    addPhotoshop();
    enter();
    const std::weak_ptr<HostsModel> released = model;
    controller.didProceed(1);
    model.reset();
    EXPECT_TRUE(list->hidden);
    EXPECT_TRUE(released.expired());
}

TEST_F(HostsControllerTest, LeavingHidesTheCustomInstall) {
    enterCustomScreen();
    controller.didProceed(1);
    EXPECT_TRUE(customView()->hidden);
    EXPECT_TRUE(list->hidden);
}

TEST_F(HostsControllerTest, LeavingWithDiscoveredHostsRemembersNothing) {
    addPhotoshop();
    enter();
    controller.didProceed(1);
    EXPECT_THAT(fake.preferences.values, IsEmpty());
}

TEST_F(HostsControllerTest, LeavingRemembersTheFolderAndThePlugInIsInstalled) {
    enterCustomScreen();
    customHost().setPlugInPath("/Chosen");
    controller.didProceed(1);
    EXPECT_EQ(remembered(), PreferenceValue("/Chosen"));
    EXPECT_TRUE(customHost().shouldInstallPlugIns());
    EXPECT_THAT(fake.preferences.synchronized, IsEmpty());
}

TEST_F(HostsControllerTest, LeavingBackwardRemembersTheFolderToo) {
    enterCustomScreen();
    customHost().setPlugInPath("/Chosen");
    controller.didProceed(-1);
    EXPECT_EQ(remembered(), PreferenceValue("/Chosen"));
}

TEST_F(HostsControllerTest, TheRememberedFolderReachesTheDiskWhenTheApplicationEnds) {
    enterCustomScreen();
    controller.didProceed(1);
    fake.notifications.post({applicationWillTerminate, nullptr, {}});
    EXPECT_THAT(fake.preferences.synchronized, ElementsAre(domain));
}

TEST_F(HostsControllerTest, TheRememberedFolderIsOfferedNextTime) {
    enterCustomScreen();
    customHost().setPlugInPath("/Chosen");
    controller.didProceed(1);
    HostsController next(fake.windowPlatform);
    main.found.clear();
    main.customInstallAllowed = true;
    next.didEnterWithModel(model, list, &main, 1);
    EXPECT_EQ(next.customPath(), "/Chosen");
}

TEST_F(HostsControllerTest, AnEmptyFolderIsRememberedAsWell) {
    remember("/Earlier");
    enterCustomScreen();
    customHost().setPlugInPath("");
    controller.didProceed(1);
    EXPECT_EQ(remembered(), PreferenceValue(""));
}

TEST_F(HostsControllerTest, ACustomFolderNeverGetsScriptsAndPanels) {
    enterCustomScreen();
    controller.setInstallScriptsAndPanelsChosen(true);
    customHost().setShouldInstallScripts(true);
    customHost().setShouldInstallPanels(true);
    controller.didProceed(1);
    EXPECT_FALSE(customHost().shouldInstallScripts());
    EXPECT_FALSE(customHost().shouldInstallPanels());
}

TEST_F(HostsControllerTest, WithoutThePlugInACustomFolderGetsNone) {
    enterCustomScreen();
    controller.setInstallPluginForCustomInstall(false);
    controller.didProceed(1);
    EXPECT_FALSE(customHost().shouldInstallPlugIns());
}

TEST_F(HostsControllerTest, ThePlugInThatWasSwitchedOffStaysOffWhenTheBoxIsSwitchedOnAgain) {
    enterCustomScreen();
    controller.setInstallPluginForCustomInstall(false);
    controller.didProceed(1);
    enter(-1);
    controller.buttonPressed(this);
    controller.setInstallPluginForCustomInstall(true);
    controller.didProceed(1);
    EXPECT_FALSE(customHost().shouldInstallPlugIns());
}

TEST_F(HostsControllerTest, ACustomFolderThatIsNotSelectedStaysAsItIs) {
    enterCustomScreen();
    customHost().setPlugInPath("/Chosen");
    customHost().setShouldInstallPanels(true);
    customHost().setHostIsSelected(false);
    controller.didProceed(1);
    EXPECT_TRUE(customHost().shouldInstallPanels());
    EXPECT_THAT(fake.preferences.values, IsEmpty());
}

}  // namespace

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/steps/hosts/HostsControllerScene.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

/// The two screens of the host-selection step.
class HostsControllerScreens : public HostsControllerScene {};

// From the list to the custom install.

TEST_F(HostsControllerScreens, TheButtonLeadsToTheCustomInstallBesideTheList) {
    enterCustomScreen();
    expectCustomScreen();
    EXPECT_EQ(customView()->superview(), parent);
    EXPECT_EQ(fake.interfaces.loaded["CustomInstall"].front()->owner,
              static_cast<InterfaceOwner*>(&controller));
    EXPECT_TRUE(main.customInstallChosen);
}

TEST_F(HostsControllerScreens, TheCustomFolderBecomesTheOnlySelectedHost) {
    remember("/My Plug-Ins");
    const HostModel first = addPhotoshop("Adobe Photoshop CC 2019");
    const HostModel second = enterCustomScreen();
    EXPECT_FALSE(isSelected(first));
    EXPECT_FALSE(isSelected(second));
    EXPECT_TRUE(customHost().hostIsSelected());
    EXPECT_EQ(customHost().plugInPath(), "/My Plug-Ins");
}

TEST_F(HostsControllerScreens, AHostWithoutASelectionIsPassedOver) {
    main.found.emplace_back(FireworksHostModel(fake.platform, "Adobe Fireworks CS6"));
    enterCustomScreen();
    EXPECT_TRUE(customHost().hostIsSelected());
    controller.undoCustomScreen();
    expectHostList();
}

TEST_F(HostsControllerScreens, LeadingToTheCustomInstallIsAnnouncedInOrder) {
    addPhotoshop();
    enter();
    recordAnnouncements();
    controller.goToCustomScreen();
    EXPECT_THAT(events,
                ElementsAre("will enableForward", "custom host added", "did enableForward",
                            "own will customPath", "own will customPath64", "will enableForward",
                            "own did customPath", "own did customPath64", "did enableForward"));
}

TEST_F(HostsControllerScreens, TheCustomFoldersHostIsKeptWhenThereIsOneAlready) {
    enterCustomScreen();
    customHost().setPlugInPath("/Chosen");
    controller.didProceed(1);
    enter(-1);
    events.clear();
    controller.buttonPressed(this);
    expectCustomScreen();
    EXPECT_THAT(events, IsEmpty());
    EXPECT_EQ(customHost().plugInPath(), "/Chosen");
    EXPECT_EQ(main.found.size(), 2U);
}

TEST_F(HostsControllerScreens, TheCustomInstallIsLoadedOnce) {
    enterCustomScreen();
    controller.undoCustomScreen();
    controller.buttonPressed(this);
    expectCustomScreen();
    EXPECT_EQ(timesLoaded(), 1U);
    EXPECT_EQ(parent->subviews.size(), 2U);
}

TEST_F(HostsControllerScreens, LoadingTheCustomInstallForgetsTheChoiceOfScriptsAndPanels) {
    controller.setInstallScriptsAndPanelsChosen(true);
    enterCustomScreen();
    EXPECT_FALSE(controller.installScriptsAndPanelsChosen());
}

TEST_F(HostsControllerScreens, ShowingTheLoadedCustomInstallKeepsThatChoice) {
    enterCustomScreen();
    controller.undoCustomScreen();
    controller.setInstallScriptsAndPanelsChosen(true);
    controller.buttonPressed(this);
    EXPECT_TRUE(controller.installScriptsAndPanelsChosen());
}

// A custom install that cannot be shown.

TEST_F(HostsControllerScreens, WithoutADescriptionTheAnnouncementsStayOpenOnPurpose) {
    fake.interfaces.unloadable.insert("CustomInstall");
    addPhotoshop();
    enter();
    recordAnnouncements();
    controller.goToCustomScreen();
    expectHostList();
    EXPECT_THAT(events,
                ElementsAre("will enableForward", "custom host added", "did enableForward",
                            "own will customPath", "own will customPath64", "will enableForward"));
    EXPECT_TRUE(main.customInstallChosen);
    EXPECT_TRUE(customHost().hostIsSelected());
}

TEST_F(HostsControllerScreens, ADescriptionWithoutTheScreenIsNoDescription) {
    fake.interfaces.prepared["CustomInstall"].missing.insert("customInstallView");
    enterCustomScreen();
    EXPECT_EQ(controller.currentView(), list);
    EXPECT_FALSE(list->hidden);
    EXPECT_EQ(parent->subviews.size(), 1U);
    EXPECT_EQ(fake.interfaces.loaded["CustomInstall"].front().use_count(), 1)
        << "only the loader still knows what was made";
}

TEST_F(HostsControllerScreens, ALaterPressTriesToLoadItAgain) {
    fake.interfaces.unloadable.insert("CustomInstall");
    enterCustomScreen();
    fake.interfaces.unloadable.clear();
    controller.buttonPressed(this);
    expectCustomScreen();
    EXPECT_EQ(main.found.size(), 2U);
}

TEST_F(HostsControllerScreens, AListInNoWindowStillGivesWayToTheCustomInstall) {
    const auto loose = std::make_shared<FakeView>();
    addPhotoshop();
    controller.didEnterWithModel(model, loose, &main, 1);
    controller.buttonPressed(this);
    EXPECT_EQ(controller.currentView(), customView());
    EXPECT_TRUE(loose->hidden);
}

// Back to the list.

TEST_F(HostsControllerScreens, BackOnTheCustomInstallReturnsToTheListWithEveryHostSelected) {
    const HostModel first = addPhotoshop("Adobe Photoshop 2020");
    const HostModel second = enterCustomScreen();
    bool overridden = false;
    controller.overrideBackButton(this, overridden);
    EXPECT_TRUE(overridden);
    expectHostList();
    EXPECT_THAT(main.found, ElementsAre(first, second));
    EXPECT_TRUE(isSelected(first));
    EXPECT_TRUE(isSelected(second));
    EXPECT_FALSE(main.customInstallChosen);
    EXPECT_EQ(controller.customPath(), "");
}

TEST_F(HostsControllerScreens, BackSelectsHostsThatWereNotSelectedBefore) {
    const HostModel first = addPhotoshop("Adobe Photoshop 2020");
    first.setHostIsSelected(false);
    enterCustomScreen();
    controller.undoCustomScreen();
    EXPECT_TRUE(isSelected(first));
}

TEST_F(HostsControllerScreens, BackIsAnnouncedInOrder) {
    enterCustomScreen();
    events.clear();
    recordAnnouncements();
    controller.undoCustomScreen();
    EXPECT_THAT(events,
                ElementsAre("custom host removed", "own will customPath", "own will customPath64",
                            "will enableForward", "own did customPath", "own did customPath64",
                            "did enableForward"));
}

TEST_F(HostsControllerScreens, BackOnTheListIsLeftToTheWizard) {
    addPhotoshop();
    enter();
    bool overridden = true;
    controller.overrideBackButton(this, overridden);
    EXPECT_FALSE(overridden);
    expectHostList();
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(HostsControllerScreens, BackOnTheListIsLeftToTheWizardAlsoWhileThereIsACustomFolder) {
    enterCustomScreen();
    controller.didProceed(1);
    enter(-1);
    events.clear();
    bool overridden = true;
    controller.overrideBackButton(this, overridden);
    EXPECT_FALSE(overridden);
    expectHostList();
    EXPECT_THAT(events, IsEmpty());
    EXPECT_TRUE(customHost().hostIsSelected());
}

TEST_F(HostsControllerScreens, AfterBackTheRememberedFolderIsOfferedAgain) {
    remember("/My Plug-Ins");
    enterCustomScreen();
    customHost().setPlugInPath("/Chosen");
    controller.undoCustomScreen();
    controller.buttonPressed(this);
    EXPECT_EQ(controller.customPath(), "/My Plug-Ins");
}

// The branch inside the step.

TEST_F(HostsControllerScreens, WithoutACustomFolderThereIsNoBranch) {
    addPhotoshop();
    enter();
    EXPECT_FALSE(controller.willBranch(1));
    EXPECT_FALSE(controller.willBranch(-1));
}

TEST_F(HostsControllerScreens, OnTheCustomInstallTheBranchIsBackward) {
    enterCustomScreen();
    EXPECT_FALSE(controller.willBranch(1));
    EXPECT_FALSE(controller.willBranch(0));
    EXPECT_TRUE(controller.willBranch(-1));
}

TEST_F(HostsControllerScreens, OnTheListWithACustomFolderTheBranchIsForward) {
    enterCustomScreen();
    controller.didProceed(1);
    enter(-1);
    EXPECT_TRUE(controller.willBranch(1));
    EXPECT_FALSE(controller.willBranch(0));
    EXPECT_FALSE(controller.willBranch(-1));
}

TEST_F(HostsControllerScreens, ProceedingInTheBranchSwitchesTheScreenInEitherDirection) {
    enterCustomScreen();
    controller.proceedInBranch(1);
    expectHostList();
    EXPECT_FALSE(main.customInstallChosen);
    controller.proceedInBranch(-1);
    expectCustomScreen();
    EXPECT_FALSE(main.customInstallChosen);
}

// When the main controller is told that a custom install is chosen.

class HostsControllerScreensChoice : public HostsControllerScene {
  protected:
    /// What the main controller says of the choice at each announcement about its forward button.
    void watchChoice() {
        watch_ = main.observe([this](Observable::Moment moment, std::string_view) {
            choices_.push_back(
                std::string(moment == Observable::Moment::willChange ? "will" : "did") +
                (main.customInstallChosen ? ", chosen" : ", not chosen"));
        });
    }

    std::vector<std::string> choices_;

  private:
    Subscription watch_;
};

TEST_F(HostsControllerScreensChoice, IsMadeBetweenTheNewFolderAndTheNewScreen) {
    addPhotoshop();
    enter();
    watchChoice();
    controller.goToCustomScreen();
    EXPECT_THAT(choices_,
                ElementsAre("will, not chosen", "did, not chosen", "will, chosen", "did, chosen"));
}

TEST_F(HostsControllerScreensChoice, IsTakenBackWhileTheScreenChanges) {
    enterCustomScreen();
    watchChoice();
    controller.undoCustomScreen();
    EXPECT_THAT(choices_, ElementsAre("will, chosen", "did, not chosen"));
}

TEST_F(HostsControllerScreensChoice, IsTakenBackAfterATickedHostIsAnnounced) {
    enterCustomScreen();
    watchChoice();
    controller.checkboxClicked(this);
    EXPECT_THAT(choices_, ElementsAre("will, chosen", "did, chosen"));
    EXPECT_FALSE(main.customInstallChosen);
}

// Ticking a host.

TEST_F(HostsControllerScreens, TickingAHostEndsTheCustomInstallForTheRestOfTheRun) {
    main.customInstallAllowed = true;
    enterCustomScreen();
    controller.checkboxClicked(this);
    EXPECT_FALSE(main.customInstallChosen);
    EXPECT_FALSE(main.customInstallAllowed);
}

TEST_F(HostsControllerScreens, TickingAHostWithoutACustomInstallLeavesItAllowed) {
    main.customInstallAllowed = true;
    addPhotoshop();
    enter();
    controller.checkboxClicked(this);
    EXPECT_TRUE(main.customInstallAllowed);
}

TEST_F(HostsControllerScreens, TickingAHostIsAnnounced) {
    addPhotoshop();
    enter();
    recordAnnouncements();
    controller.checkboxClicked(this);
    EXPECT_THAT(events, ElementsAre("will enableForward", "did enableForward"));
}

}  // namespace

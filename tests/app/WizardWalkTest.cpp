#include <cstddef>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Announcements.h"
#include "tests/app/Wizard.h"

// Walks through the wizard's own steps; those of SetupControllerNavigationTest are scripted.

namespace installer::test {
namespace {

using testing::ElementsAre;

class WizardWalkTest : public WizardTest {};

TEST_F(WizardWalkTest, WithNothingRunningTheHostsLeadStraightToTheCompletion) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.memory.addFile("/Installer.app/Contents/Resources/files/PHOTOSHOP/run.jsx");
    start();
    goTo(1);
    EXPECT_THAT(visibleViews(), ElementsAre("hostsView"));
    wizard->nextView(nullptr);
    EXPECT_THAT(visibleViews(), ElementsAre("registerView"));
    EXPECT_THAT(highlighted(), ElementsAre(4));
    EXPECT_EQ(textOf("mainLabelText"), "Finished");
    EXPECT_TRUE(flagOf("successfulInstall"));
    EXPECT_TRUE(flagOf("enableForward"));
    EXPECT_FALSE(flagOf("enableBackward"));
    EXPECT_TRUE(fake.memory.exists("/Applications/Adobe Photoshop CS6/run.jsx"));
}

TEST_F(WizardWalkTest, TheWizardsOwnStepsAreAnnouncedInsideOneAnotherToo) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(1);
    recordAnnouncements();
    wizard->nextView(nullptr);
    const Lines untilTheInstallation = joined(
        {announcedBefore,
         {"will enableForward", "did enableForward"},
         announcedBefore,
         {"will enableForward", "will enableBackward", "will canProceed", "will copyInProgress",
          "did enableForward", "did enableBackward", "did canProceed", "did copyInProgress"}});
    const Lines fromTheCompletionOn = joined({announcedBefore,
                                              {"will informativeText", "will successfulInstall",
                                               "did informativeText", "did successfulInstall"},
                                              announcedAfter,
                                              {"did successfulInstall"},
                                              announcedAfter,
                                              announcedAfter});
    const auto first = static_cast<std::ptrdiff_t>(untilTheInstallation.size());
    const auto last = static_cast<std::ptrdiff_t>(fromTheCompletionOn.size());
    ASSERT_GT(events.size(), untilTheInstallation.size() + fromTheCompletionOn.size());
    EXPECT_EQ(Lines(events.begin(), events.begin() + first), untilTheInstallation);
    EXPECT_EQ(Lines(events.end() - last, events.end()), fromTheCompletionOn);
}

TEST_F(WizardWalkTest, APressBehindTheLicenceQuestionMovesNothing) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    fake.alerts.whenShown = [&] {
        if (fake.alerts.shown.size() == 1) wizard->performAction("nextView", nullptr);
    };
    wizard->performAction("nextView", nullptr);
    EXPECT_EQ(fake.alerts.shown.size(), 1U);
    EXPECT_THAT(visibleViews(), ElementsAre("hostsView"));
}

TEST_F(WizardWalkTest, TheWizardEndsAsSoonAsItMayWhenItIsToldToEnd) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(1);
    bool told = false;
    fake.eventLoop.duringTurn = [&] {
        if (told || !flagOf("copyInProgress")) return;
        told = true;
        wizard->endSoon();
        EXPECT_EQ(timesClosed(), 0);
    };
    wizard->nextView(nullptr);
    ASSERT_TRUE(told);
    EXPECT_TRUE(flagOf("successfulInstall"));
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_THAT(fake.workspace.opened, testing::IsEmpty());
}

TEST_F(WizardWalkTest, TheWizardEndsAtOnceWhileNothingIsInstalled) {
    start();
    wizard->endSoon();
    EXPECT_EQ(timesClosed(), 1);
}

TEST_F(WizardWalkTest, ARunningHostHoldsTheWizardUp) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    start();
    goTo(2);
    EXPECT_THAT(visibleViews(), ElementsAre("rtfView"));
    EXPECT_FALSE(flagOf("enableForward"));
    wizard->nextView(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(2));
    wizard->previousView(nullptr);
    EXPECT_THAT(visibleViews(), ElementsAre("hostsView"));
}

TEST_F(WizardWalkTest, TheHeadingAsksToQuitARunningHostAndThanksWhenItHasEnded) {
    fake.bundle.tables["Localizable"]["host_running_title"] = "Please quit it";
    fake.bundle.tables["Localizable"]["thank_you"] = "Thank you";
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    start();
    goTo(2);
    EXPECT_EQ(textOf("mainLabelText"), "Please quit it");
    fake.workspace.end("Photoshop CS6");
    EXPECT_EQ(textOf("mainLabelText"), "Thank you");
    EXPECT_TRUE(flagOf("enableForward"));
}

TEST_F(WizardWalkTest, TheProgramThatIsWaitedForHasItsRealName) {
    fake.bundle.tables["Localizable"].insert(
        {{"waiting_for_program_fmt", "Close %@"}, {"program_has_closed", "Closed"}});
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6", "Photoshop Helper"};
    start();
    goTo(2);
    EXPECT_EQ(textOf("waitingText"), "Close Photoshop CS6");
    fake.workspace.end("Photoshop CS6");
    EXPECT_EQ(textOf("waitingText"), "Close Photoshop Helper");
    fake.workspace.end("Photoshop Helper");
    EXPECT_EQ(textOf("waitingText"), "Closed");
}

TEST_F(WizardWalkTest, TheProgramOfAnotherUserIsCalledThatUsers) {
    fake.bundle.tables["Localizable"].insert(
        {{"waiting_for_program_fmt", "Close %@"}, {"waiting_for_program_of_fmt", "%1$@ of %2$@"}});
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    fake.workspace.faces["Photoshop CS6"].owner = "lena";
    start();
    goTo(2);
    EXPECT_EQ(textOf("waitingText"), "Photoshop CS6 of lena");
}

TEST_F(WizardWalkTest, TheProgramThatIsWaitedForHasItsIconElseItsHosts) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.icons["/Applications/Adobe Photoshop CS6"] = Image{"/host"};
    fake.workspace.running = {"Photoshop CS6", "Photoshop Helper"};
    fake.workspace.faces["Photoshop CS6"].icon = Image{"/own"};
    start();
    goTo(2);
    EXPECT_EQ(valueOf<Image>("runningIcon"), Image{"/own"});
    EXPECT_EQ(textOf("runningApplicationName"), "Photoshop CS6");
    fake.workspace.end("Photoshop CS6");
    EXPECT_EQ(valueOf<Image>("runningIcon"), Image{"/host"});
    fake.workspace.end("Photoshop Helper");
    EXPECT_EQ(valueOf<Image>("runningIcon"), Image());
}

TEST_F(WizardWalkTest, AHostThatNobodyWantsMayRun) {
    addPhotoshop("Adobe Photoshop CS6");
    fake.workspace.running = {"Photoshop CS6"};
    start();
    goTo(1);
    wizard->setRowChecked("foundHosts", 0, false);
    wizard->nextView(nullptr);
    EXPECT_THAT(visibleViews(), ElementsAre("registerView"));
}

TEST_F(WizardWalkTest, DuringTheInstallationTheWindowStaysAndNoButtonMoves) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(1);
    bool asked = false;
    fake.eventLoop.duringTurn = [&] {
        if (asked || !flagOf("copyInProgress")) return;
        asked = true;
        EXPECT_FALSE(flagOf("canClose"));
        EXPECT_FALSE(flagOf("enableForward"));
        EXPECT_FALSE(flagOf("enableBackward"));
        EXPECT_FALSE(wizard->shouldChangeText("\n"));
        wizard->performAction("previousView", nullptr);
        wizard->performAction("quit", nullptr);
        EXPECT_THAT(highlighted(), ElementsAre(3));
        EXPECT_EQ(timesClosed(), 0);
    };
    wizard->nextView(nullptr);
    EXPECT_TRUE(asked);
    EXPECT_THAT(highlighted(), ElementsAre(4));
    EXPECT_TRUE(flagOf("canClose"));
}

TEST_F(WizardWalkTest, APressAsTheInstallationEndsDoesNotSkipTheLastPage) {
    addPhotoshop("Adobe Photoshop CS6");
    start();
    goTo(1);
    bool wasInProgress = false;
    bool pressed = false;
    fake.eventLoop.duringTurn = [&] {
        if (wasInProgress && !flagOf("copyInProgress") && !pressed) {
            pressed = true;
            wizard->performAction("nextView", nullptr);
        }
        wasInProgress = flagOf("copyInProgress");
    };
    wizard->nextView(nullptr);
    EXPECT_TRUE(pressed);
    EXPECT_THAT(visibleViews(), ElementsAre("registerView"));
    EXPECT_TRUE(flagOf("successfulInstall"));
    EXPECT_EQ(timesClosed(), 0);
}

}  // namespace
}  // namespace installer::test

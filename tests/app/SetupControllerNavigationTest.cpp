#include <cstddef>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Announcements.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

class StepWithButton : public ScriptedStep, public HasExtraButton {
  public:
    using ScriptedStep::ScriptedStep;
    const void* pressedBy = nullptr;
    void buttonPressed(const void* sender) override { pressedBy = sender; }
};

class StepWithOverride : public ScriptedStep, public OverridesBackButton {
  public:
    using ScriptedStep::ScriptedStep;
    const void* askedBy = nullptr;
    void overrideBackButton(const void* sender, bool& overridden) override {
        askedBy = sender;
        overridden = true;
    }
};

class StepWithButtonAndOverride : public ScriptedStep,
                                  public HasExtraButton,
                                  public OverridesBackButton {
  public:
    using ScriptedStep::ScriptedStep;
    bool consumes = true;
    bool flagAtFirst = true;
    const void* askedBy = nullptr;
    void buttonPressed(const void* /*sender*/) override {}
    void overrideBackButton(const void* sender, bool& overridden) override {
        askedBy = sender;
        flagAtFirst = overridden;
        if (consumes) overridden = true;
    }
};

class SetupControllerNavigationTest : public WizardTest {
  protected:
    const int button_ = 0;  ///< somebody who can be told from others
    const void* sender_ = &button_;
};

TEST_F(SetupControllerNavigationTest, ADisagreementKeepsTheWizardOnTheLicenceAndIsAskedAgain) {
    start();
    fake.alerts.answer = 1;
    recordAnnouncements();
    wizard->nextView(nullptr);
    wizard->nextView(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(0));
    EXPECT_THAT(fake.alerts.shown, SizeIs(2));
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(SetupControllerNavigationTest, TheAgreementIsAskedForOnceInARun) {
    start();
    wizard->nextView(nullptr);
    script(1);
    wizard->previousView(nullptr);
    EXPECT_THAT(visibleViews(), ElementsAre("licenseView"));
    wizard->nextView(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(1));
    EXPECT_THAT(fake.alerts.shown, SizeIs(1));
}

TEST_F(SetupControllerNavigationTest, BackwardOnTheLicenceClosesTheWindowAndOpensNoPage) {
    start();
    recordAnnouncements();
    wizard->previousView(nullptr);
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_THAT(fake.workspace.opened, IsEmpty());
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(SetupControllerNavigationTest, TheStepThatIsLeftLastIsNotTold) {
    start();
    wizard->previousView(nullptr);
    EXPECT_THAT(visibleViews(), ElementsAre("licenseView"));
    EXPECT_THAT(highlighted(), ElementsAre(0));
}

TEST_F(SetupControllerNavigationTest, ForwardOnTheCompletionClosesTheWindowAndOpensTheHelpPage) {
    start();
    scriptSteps();
    goTo(4);
    recordAnnouncements();
    events.clear();
    wizard->nextView(nullptr);
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_THAT(fake.workspace.opened, ElementsAre("https://acme.example/filters2"));
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(SetupControllerNavigationTest, TheHelpPageStaysClosedWhenItIsNotWanted) {
    start();
    scriptSteps();
    wizard->setValueForProperty("launchHelpURL", false);
    goTo(5);
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_THAT(fake.workspace.opened, IsEmpty());
}

TEST_F(SetupControllerNavigationTest, AfterTheEndNoButtonDoesAnything) {
    start();
    scriptSteps();
    goTo(5);
    fake.workspace.opened.clear();
    events.clear();
    wizard->nextView(nullptr);
    wizard->previousView(nullptr);
    wizard->subViewButtonPress(nullptr);
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_THAT(fake.workspace.opened, IsEmpty());
    EXPECT_THAT(events, IsEmpty());
    EXPECT_FALSE(wizard->enableForward());
    EXPECT_FALSE(wizard->enableBackward());
}

TEST_F(SetupControllerNavigationTest, AStepIsToldWithWhatBelongsToItAndTheDirection) {
    start();
    const auto step = std::make_shared<ScriptedStep>(1, events);
    const auto model = std::make_shared<ScriptedModel>();
    const auto stepView = std::make_shared<FakeView>();
    wizard->addStep(stepView, step, model, 1);
    wizard->nextView(nullptr);
    EXPECT_THAT(events, ElementsAre("enter 1 1"));
    EXPECT_EQ(step->model, model);
    EXPECT_EQ(step->view, stepView);
    EXPECT_EQ(step->mainController, wizard.get());
    EXPECT_TRUE(stepView->hidden) << "showing the view is the step's own work";
}

TEST_F(SetupControllerNavigationTest, ForwardAndBackwardLeaveTheOldStepBeforeEnteringTheNew) {
    start();
    scriptSteps();
    goTo(2);
    wizard->previousView(nullptr);
    EXPECT_THAT(events,
                ElementsAre("enter 1 1", "leave 1 1", "enter 2 1", "leave 2 -1", "enter 1 -1"));
}

TEST_F(SetupControllerNavigationTest, TheCompletionLeadsBackToTheHostsWithoutTheStepsBetween) {
    start();
    scriptSteps();
    goTo(4);
    events.clear();
    wizard->previousView(nullptr);
    EXPECT_THAT(events, ElementsAre("leave 4 -3", "enter 1 -3"));
    EXPECT_THAT(highlighted(), ElementsAre(1));
}

TEST_F(SetupControllerNavigationTest, OneRowIsHighlightedInEveryStep) {
    start();
    scriptSteps();
    for (std::size_t step = 0; step < 5; ++step) {
        EXPECT_THAT(highlighted(), ElementsAre(step));
        wizard->nextView(nullptr);
    }
}

TEST_F(SetupControllerNavigationTest, TheOldRowGoesGreyBeforeTheNewOneGoesBlue) {
    const auto dots = std::make_shared<FakeImageView>();
    fake.interfaces.prepared["Step Indicator"].imageViews["indicator"] = dots;
    start();
    dots->images.clear();
    wizard->nextView(nullptr);
    EXPECT_THAT(dots->images, ElementsAre(Image{"/gray"}, Image{"/blue"}));
}

TEST_F(SetupControllerNavigationTest, TheRowsMoveBeforeTheStepsAreTold) {
    start();
    std::vector<std::size_t> highlightedAtEntry;
    script(1)->whileEntered = [&](MainController&) { highlightedAtEntry = highlighted(); };
    wizard->nextView(nullptr);
    EXPECT_THAT(highlightedAtEntry, ElementsAre(1));
}

TEST_F(SetupControllerNavigationTest, AChangeOfStepIsAnnouncedAroundIt) {
    start();
    scriptSteps();
    goTo(1);
    events.clear();
    recordAnnouncements();
    wizard->nextView(nullptr);
    EXPECT_THAT(events, ElementsAreArray(
                            joined({announcedBefore, {"leave 1 1", "enter 2 1"}, announcedAfter})));
}

TEST_F(SetupControllerNavigationTest, StepsThatMoveOnByThemselvesAreAnnouncedInsideOneAnother) {
    start();
    scriptSteps();
    const auto moveOn = [](MainController& main) { main.nextView(nullptr); };
    script(2)->whileEntered = moveOn;
    script(3)->whileEntered = moveOn;
    goTo(1);
    events.clear();
    recordAnnouncements();
    wizard->nextView(nullptr);
    EXPECT_THAT(events, ElementsAreArray(joined({announcedBefore,
                                                 {"leave 1 1", "enter 2 1"},
                                                 announcedBefore,
                                                 {"leave 2 1", "enter 3 1"},
                                                 announcedBefore,
                                                 {"leave 3 1", "enter 4 1"},
                                                 announcedAfter,
                                                 announcedAfter,
                                                 announcedAfter})));
    EXPECT_THAT(highlighted(), ElementsAre(4));
    EXPECT_EQ(textOf("goForwardText"), "Finish");
    EXPECT_EQ(textOf("goBackwardsText"), "Go Back");
}

TEST_F(SetupControllerNavigationTest, AStepThatWasLeftMeanwhileMovesNothingOn) {
    start();
    scriptSteps();
    const auto step = script<StepWithButton>(2);
    step->whileEntered = [&](MainController& main) {
        main.nextView(sender_);
        main.nextView(step.get());
    };
    goTo(2);
    EXPECT_THAT(highlighted(), ElementsAre(3));
}

TEST_F(SetupControllerNavigationTest, AStepThatEndsTheWizardWhileItIsEnteredIsSurvived) {
    start();
    scriptSteps();
    script(4)->whileEntered = [](MainController& main) { main.nextView(nullptr); };
    goTo(4);
    EXPECT_EQ(timesClosed(), 1);
    EXPECT_EQ(textOf("mainLabelText"), "???");
}

TEST_F(SetupControllerNavigationTest, TheButtonsTextsFollowTheStep) {
    start();
    scriptSteps();
    Lines texts;
    for (int step = 0; step < 5; ++step) {
        texts.push_back(textOf("goBackwardsText") + "|" + textOf("goForwardText"));
        wizard->nextView(nullptr);
    }
    EXPECT_THAT(texts, ElementsAre("Quit|Continue", "Go Back|Continue", "Go Back|Continue",
                                   "Go Back|Continue", "Go Back|Finish"));
}

TEST_F(SetupControllerNavigationTest, TheButtonsAreEnabledAsTheStepSays) {
    start();
    const auto step = script(1);
    goTo(1);
    step->forward = false;
    EXPECT_FALSE(wizard->enableForward());
    EXPECT_TRUE(flagOf("enableBackward"));
    step->forward = true;
    step->backward = false;
    EXPECT_TRUE(flagOf("enableForward"));
    EXPECT_FALSE(wizard->enableBackward());
}

TEST_F(SetupControllerNavigationTest, AVetoOfTheStepIsSilent) {
    start();
    script(1)->mayProceed = false;
    goTo(1);
    events.clear();
    recordAnnouncements();
    wizard->nextView(nullptr);
    wizard->previousView(nullptr);
    EXPECT_THAT(events, IsEmpty());
    EXPECT_THAT(highlighted(), ElementsAre(1));
}

TEST_F(SetupControllerNavigationTest, AStepWithAButtonMayConsumeThePressOfTheBackwardButton) {
    start();
    const auto step = script<StepWithButtonAndOverride>(1);
    goTo(1);
    events.clear();
    const Subscription changes = fake.notifications.observe(
        "stateDidChange", [this](const Notification&) { events.emplace_back("state"); });
    wizard->performAction("previousView", sender_);
    EXPECT_THAT(events, IsEmpty());
    EXPECT_THAT(highlighted(), ElementsAre(1));
    EXPECT_EQ(step->askedBy, sender_);
    EXPECT_FALSE(step->flagAtFirst);
}

TEST_F(SetupControllerNavigationTest, AStepThatDoesNotConsumeThePressIsLeft) {
    start();
    script<StepWithButtonAndOverride>(1)->consumes = false;
    goTo(1);
    wizard->previousView(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(0));
}

TEST_F(SetupControllerNavigationTest, AStepWithoutAButtonIsNotAskedWhetherItConsumesThePress) {
    start();
    const auto step = script<StepWithOverride>(1);
    goTo(1);
    wizard->previousView(sender_);
    EXPECT_EQ(step->askedBy, nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(0));
}

TEST_F(SetupControllerNavigationTest, AStepWithAButtonAndNoOverrideIsLeft) {
    start();
    script<StepWithButton>(1);
    goTo(1);
    wizard->previousView(nullptr);
    EXPECT_THAT(highlighted(), ElementsAre(0));
}

TEST_F(SetupControllerNavigationTest, TheStepsButtonIsTheCurrentSteps) {
    start();
    const auto step = script<StepWithButton>(1);
    wizard->performAction("subViewButtonPress", sender_);
    EXPECT_EQ(step->pressedBy, nullptr);
    goTo(1);
    wizard->performAction("subViewButtonPress", sender_);
    EXPECT_EQ(step->pressedBy, sender_);
    EXPECT_THAT(highlighted(), ElementsAre(1));
}

TEST_F(SetupControllerNavigationTest, TheActionsOfTheButtonsGoThroughTheWizard) {
    start();
    scriptSteps();
    wizard->performAction("nextView", sender_);
    EXPECT_THAT(highlighted(), ElementsAre(1));
    wizard->performAction("previousView", sender_);
    EXPECT_THAT(highlighted(), ElementsAre(0));
}

TEST_F(SetupControllerNavigationTest, ReturnInAGuardedTextGoesOnWhenTheStepAllowsIt) {
    start();
    fake.alerts.answer = 1;
    EXPECT_FALSE(wizard->shouldChangeText("\n"));
    EXPECT_THAT(highlighted(), ElementsAre(0));
    fake.alerts.answer = 0;
    EXPECT_FALSE(wizard->shouldChangeText("\n"));
    EXPECT_THAT(highlighted(), ElementsAre(1));
}

TEST_F(SetupControllerNavigationTest, ReturnInAGuardedTextIsSentByTheWindowsControllerItself) {
    class ListeningController : public SetupController {
      public:
        using SetupController::SetupController;
        const void* sender = nullptr;
        void nextView(const void* newSender) override { sender = newSender; }
    };
    ListeningController controller(fake.windowPlatform);
    EXPECT_FALSE(controller.shouldChangeText("\n"));
    EXPECT_EQ(controller.sender, &controller);
}

TEST_F(SetupControllerNavigationTest, AnythingElseTypedIntoAGuardedTextDoesNothing) {
    start();
    for (const char* typed : {"a", "", "\n\n", "\r", "\r\n", " \n", "é"}) {
        EXPECT_FALSE(wizard->shouldChangeText(typed));
    }
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
    EXPECT_THAT(highlighted(), ElementsAre(0));
}

}  // namespace
}  // namespace installer::test

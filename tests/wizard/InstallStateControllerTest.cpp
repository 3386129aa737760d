#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FakePlatform.h"
#include "wizard/InstallStateController.h"
#include "wizard/StepController.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A step that answers as it is told and remembers what it was asked.
class AskedStep : public StepController {
  public:
    bool answer = true;
    std::function<void()> whileAsked;
    std::vector<std::int32_t> asked;
    int told = 0;

    bool enableForward() const override { return true; }
    bool enableBackward() const override { return true; }
    bool canProceed(std::int32_t direction) override {
        asked.push_back(direction);
        if (whileAsked) whileAsked();
        return answer;
    }
    void didProceed(std::int32_t /*direction*/) override { ++told; }
    void didEnterWithModel(std::shared_ptr<StepModel> /*model*/, std::shared_ptr<View> /*view*/,
                           MainController* /*mainController*/,
                           std::int32_t /*direction*/) override {
        ++told;
    }
};

struct Change {
    std::int32_t oldState;
    std::int32_t newState;
    bool operator==(const Change&) const = default;
};

class InstallStateControllerTest : public testing::Test {
  protected:
    void reach(std::int32_t state) {
        controller.gotoStartingState(nullptr);
        while (controller.currentState() != state)
            controller.advanceStateWithStepController(&step, nullptr);
        changes.clear();
        step.asked.clear();
    }

    FakePlatform fake;
    InstallStateController controller{fake.platform, 0};
    AskedStep step;
    std::vector<Change> changes;
    Subscription handle =
        fake.notifications.observe("stateDidChange", [this](const Notification& notification) {
            EXPECT_EQ(notification.sender, &controller);
            EXPECT_EQ(notification.userInformation.size(), 1U);
            changes.push_back(
                {notification.userInformation.at("oldState"), controller.currentState()});
        });
};

TEST_F(InstallStateControllerTest, StartsBeforeTheFirstStepAndSaysNothing) {
    EXPECT_EQ(controller.currentState(), -1);
    EXPECT_THAT(changes, IsEmpty());
}

TEST_F(InstallStateControllerTest, KeepsTheInstallTypeItWasMadeWith) {
    EXPECT_EQ(controller.installType(), 0);
    EXPECT_EQ(InstallStateController(fake.platform, -3).installType(), -3);
}

TEST_F(InstallStateControllerTest, TheInstallTypeChangesNoMove) {
    InstallStateController other(fake.platform, 7);
    handle.cancel();
    other.gotoStartingState(nullptr);
    other.advanceStateWithStepController(&step, nullptr);
    EXPECT_EQ(other.currentState(), 1);
}

TEST_F(InstallStateControllerTest, StartingEntersTheFirstStepWithoutAskingAnyStep) {
    controller.gotoStartingState(&step);
    EXPECT_THAT(changes, ElementsAre(Change{-1, 0}));
    EXPECT_THAT(step.asked, IsEmpty());
}

TEST_F(InstallStateControllerTest, StartingAgainStillReportsThatNothingWasBefore) {
    reach(3);
    controller.gotoStartingState(nullptr);
    controller.gotoStartingState(nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{-1, 0}, Change{-1, 0}));
}

TEST_F(InstallStateControllerTest, AdvancesThroughEveryStepToTheEnd) {
    controller.gotoStartingState(nullptr);
    for (int press = 0; press < 5; ++press)
        controller.advanceStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{-1, 0}, Change{0, 1}, Change{1, 2}, Change{2, 3},
                                     Change{3, 4}, Change{4, 5}));
    EXPECT_THAT(step.asked, ElementsAre(1, 1, 1, 1, 1));
}

TEST_F(InstallStateControllerTest, TheInstallationLeadsToTheCompletion) {
    reach(step_number::fileInstallation);
    controller.advanceStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes,
                ElementsAre(Change{step_number::fileInstallation, step_number::completion}));
}

TEST_F(InstallStateControllerTest, AdvancingHasNoUpperBound) {
    reach(5);
    controller.advanceStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{5, 6}));
}

TEST_F(InstallStateControllerTest, AdvancingBeforeTheStartEntersTheFirstStep) {
    controller.advanceStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{-1, 0}));
}

TEST_F(InstallStateControllerTest, AVetoOfTheStepKeepsItFromBeingLeftInSilence) {
    reach(2);
    step.answer = false;
    controller.advanceStateWithStepController(&step, nullptr);
    controller.retreatStateWithStepController(&step, nullptr);
    EXPECT_EQ(controller.currentState(), 2);
    EXPECT_THAT(changes, IsEmpty());
    EXPECT_THAT(step.asked, ElementsAre(1, -1));
}

TEST_F(InstallStateControllerTest, TheStepIsAskedBeforeTheStateChanges) {
    reach(1);
    std::vector<std::int32_t> statesWhileAsked;
    step.whileAsked = [&] { statesWhileAsked.push_back(controller.currentState()); };
    controller.advanceStateWithStepController(&step, nullptr);
    controller.retreatStateWithStepController(&step, nullptr);
    EXPECT_THAT(statesWhileAsked, ElementsAre(1, 2));
}

TEST_F(InstallStateControllerTest, WithoutAStepControllerNothingHappens) {
    reach(1);
    controller.advanceStateWithStepController(nullptr, nullptr);
    controller.retreatStateWithStepController(nullptr, nullptr);
    EXPECT_EQ(controller.currentState(), 1);
    EXPECT_THAT(changes, IsEmpty());
}

TEST_F(InstallStateControllerTest, TellsTheStepsNothingItself) {
    controller.gotoStartingState(nullptr);
    controller.advanceStateWithStepController(&step, nullptr);
    controller.retreatStateWithStepController(&step, nullptr);
    EXPECT_EQ(step.told, 0);
}

TEST_F(InstallStateControllerTest, RetreatsOneStepAtATimeAndOutOfTheFirst) {
    reach(3);
    for (int press = 0; press < 4; ++press)
        controller.retreatStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{3, 2}, Change{2, 1}, Change{1, 0}, Change{0, -1}));
    EXPECT_THAT(step.asked, ElementsAre(-1, -1, -1, -1));
}

TEST_F(InstallStateControllerTest, TheCompletionLeadsBackToTheHostSelection) {
    reach(4);
    controller.retreatStateWithStepController(&step, nullptr);
    ASSERT_THAT(changes, ElementsAre(Change{4, 1}));
    EXPECT_EQ(changes[0].newState - changes[0].oldState, -3);
}

TEST_F(InstallStateControllerTest, RetreatingCountsFromTheStateInWhichTheButtonWasPressed) {
    reach(4);
    step.whileAsked = [&] {
        step.whileAsked = nullptr;
        controller.gotoStartingState(nullptr);
    };
    controller.retreatStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{-1, 0}, Change{4, 1}));
}

TEST_F(InstallStateControllerTest, AdvancingCountsFromTheStateAfterTheStepWasAsked) {
    reach(2);
    step.whileAsked = [&] {
        step.whileAsked = nullptr;
        controller.gotoStartingState(nullptr);
    };
    controller.advanceStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{-1, 0}, Change{0, 1}));
}

TEST_F(InstallStateControllerTest, AStepMayMoveOnWhileItIsEntered) {
    reach(1);
    const Subscription mover =
        fake.notifications.observe("stateDidChange", [this](const Notification&) {
            if (controller.currentState() == 2)
                controller.advanceStateWithStepController(&step, nullptr);
        });
    controller.advanceStateWithStepController(&step, nullptr);
    EXPECT_THAT(changes, ElementsAre(Change{1, 2}, Change{2, 3}));
}

}  // namespace
}  // namespace installer::test

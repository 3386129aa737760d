#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/FakePlatform.h"
#include "wizard/InstallStateController.h"
#include "wizard/SetupViewModel.h"
#include "wizard/StepController.h"

namespace installer::test {
namespace {

class WillingStep : public StepController {
  public:
    bool enableForward() const override { return true; }
    bool enableBackward() const override { return true; }
    bool canProceed(std::int32_t /*direction*/) override { return true; }
    void didProceed(std::int32_t /*direction*/) override {}
    void didEnterWithModel(std::shared_ptr<StepModel> /*model*/, std::shared_ptr<View> /*view*/,
                           MainController* /*mainController*/,
                           std::int32_t /*direction*/) override {}
};

class SetupViewModelTest : public testing::Test {
  protected:
    SetupViewModelTest() {
        fake.bundle.tables["Localizable"] = {{"continue", "Continue"},
                                             {"quit", "Quit"},
                                             {"install_again", "Install Again"},
                                             {"go_back", "Go Back"},
                                             {"finish", "Finish"}};
    }

    std::shared_ptr<InstallStateController> controllerInState(std::int32_t state) {
        auto controller = std::make_shared<InstallStateController>(fake.platform, 0);
        WillingStep step;
        while (controller->currentState() != state)
            controller->advanceStateWithStepController(&step, nullptr);
        return controller;
    }

    FakePlatform fake;
};

struct ButtonTexts {
    std::int32_t state;
    std::string forward;
    std::string backwards;
};

class SetupViewModelInState : public SetupViewModelTest,
                              public testing::WithParamInterface<ButtonTexts> {};

TEST_P(SetupViewModelInState, NamesTheButtons) {
    SetupViewModel model(fake.platform);
    model.setStateController(controllerInState(GetParam().state));
    EXPECT_EQ(model.goForwardText(), GetParam().forward);
    EXPECT_EQ(model.goBackwardsText(), GetParam().backwards);
}

// The text "install_again" is loaded and shown in no state.
INSTANTIATE_TEST_SUITE_P(
    EveryState, SetupViewModelInState,
    testing::Values(ButtonTexts{-1, "Continue", "Go Back"}, ButtonTexts{0, "Continue", "Quit"},
                    ButtonTexts{1, "Continue", "Go Back"}, ButtonTexts{2, "Continue", "Go Back"},
                    ButtonTexts{3, "Continue", "Go Back"}, ButtonTexts{4, "Finish", "Go Back"},
                    ButtonTexts{5, "Continue", "Go Back"}),
    [](const auto& row) {
        return row.param.state < 0 ? "NotStarted" : "State" + std::to_string(row.param.state);
    });

TEST_F(SetupViewModelTest, FollowsTheStateOfTheControllerItShares) {
    const auto controller = controllerInState(0);
    SetupViewModel model(fake.platform);
    model.setStateController(controller);
    WillingStep step;
    controller->advanceStateWithStepController(&step, nullptr);
    EXPECT_EQ(model.goBackwardsText(), "Go Back");
}

TEST_F(SetupViewModelTest, KeepsTheStateControllerUntilItGoesItself) {
    auto controller = controllerInState(4);
    const std::weak_ptr<InstallStateController> observed = controller;
    {
        SetupViewModel model(fake.platform);
        model.setStateController(std::move(controller));
        EXPECT_FALSE(observed.expired());
        EXPECT_EQ(model.goForwardText(), "Finish");
    }
    EXPECT_TRUE(observed.expired());
}

TEST_F(SetupViewModelTest, WithoutAStateControllerTheTextsAreThoseOfTheFirstStep) {
    const SetupViewModel model(fake.platform);
    EXPECT_EQ(model.goForwardText(), "Continue");
    EXPECT_EQ(model.goBackwardsText(), "Quit");
}

TEST_F(SetupViewModelTest, MissingTextsAreEmptyButForTheOneThatAsksToBeNoticed) {
    fake.bundle.tables.clear();
    SetupViewModel model(fake.platform);
    model.setStateController(controllerInState(0));
    EXPECT_EQ(model.goForwardText(), "can't find");
    EXPECT_EQ(model.goBackwardsText(), "");
    model.setStateController(controllerInState(4));
    EXPECT_EQ(model.goForwardText(), "");
    EXPECT_EQ(model.goBackwardsText(), "");
}

TEST_F(SetupViewModelTest, TextsAreLookedUpOnce) {
    const SetupViewModel model(fake.platform);
    fake.bundle.tables["Localizable"]["continue"] = "Changed";
    EXPECT_EQ(model.goForwardText(), "Continue");
}

TEST_F(SetupViewModelTest, TheHeadingAndTheButtonsStatesAreNotItsConcern) {
    SetupViewModel model(fake.platform);
    for (const std::int32_t state : {0, 2, 4}) {
        model.setStateController(controllerInState(state));
        EXPECT_EQ(model.mainLabelText(), "bogus");
        EXPECT_FALSE(model.isForwardEnabled());
        EXPECT_FALSE(model.isBackEnabled());
    }
}

TEST_F(SetupViewModelTest, TheTextForInstallingAgainIsLoadedWithTheOthers) {
    EXPECT_EQ(NavigationTexts::load(fake.bundle).install_again, "Install Again");
    fake.bundle.tables.clear();
    EXPECT_EQ(NavigationTexts::load(fake.bundle).install_again, "");
}

}  // namespace
}  // namespace installer::test

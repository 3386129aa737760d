#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/completion/RegisterController.h"
#include "steps/completion/RegisterModel.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RegisterControllerTest : public testing::Test {
  protected:
    void enter(std::int32_t direction = 1) {
        controller.didEnterWithModel(model, view, &main, direction);
    }

    FakeWindowPlatform fake;
    std::vector<std::string> events;
    FakeMainController main{events};
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
    std::shared_ptr<RegisterModel> model = std::make_shared<RegisterModel>(fake.platform);
    RegisterController controller{fake.windowPlatform};
};

TEST_F(RegisterControllerTest, OnlyTheForwardButtonIsEnabled) {
    EXPECT_TRUE(controller.enableForward());
    EXPECT_FALSE(controller.enableBackward());
    enter();
    EXPECT_TRUE(controller.enableForward());
    EXPECT_FALSE(controller.enableBackward());
}

TEST_F(RegisterControllerTest, CanBeLeftInBothDirections) {
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_TRUE(controller.canProceed(-1));
    EXPECT_TRUE(controller.canProceed(-3));
}

TEST_F(RegisterControllerTest, ASuccessfulInstallationIsTold) {
    main.success = true;
    enter();
    EXPECT_FALSE(model->indicateFailure());
    EXPECT_NE(model->informativeText(), PlainOrStyledText(""));
}

TEST_F(RegisterControllerTest, AFailedInstallationIsTold) {
    enter();
    EXPECT_TRUE(model->indicateFailure());
}

TEST_F(RegisterControllerTest, TheOutcomeIsLookedAtAnewAtEveryEntry) {
    enter();
    controller.didProceed(-3);
    main.success = true;
    enter();
    EXPECT_FALSE(model->indicateFailure());
    controller.didProceed(-3);
    main.success = false;
    enter(-1);
    EXPECT_TRUE(model->indicateFailure());
}

TEST_F(RegisterControllerTest, AnnouncesWhatChangesAroundTheChoiceOfTheText) {
    main.recordAnnouncements();
    const Subscription handle =
        model->observe([this](Observable::Moment moment, std::string_view property) {
            const bool isBefore = moment == Observable::Moment::willChange;
            events.push_back((isBefore ? "model will " : "model did ") + std::string(property) +
                             (model->indicateFailure() ? " of failure" : " of success"));
        });
    enter();
    EXPECT_THAT(events,
                ElementsAre("will informativeText", "will successfulInstall",
                            "model will backgroundImage of success", "did informativeText",
                            "did successfulInstall", "model did backgroundImage of failure"));
}

TEST_F(RegisterControllerTest, TheStepsButtonOpensTheMakersPageAndNothingElse) {
    fake.bundle.tables["Localizable"]["register_url"] = "https://acme.example/register";
    enter();
    main.recordAnnouncements();
    controller.buttonPressed(nullptr);
    EXPECT_THAT(fake.workspace.opened, ElementsAre("https://acme.example/register"));
    EXPECT_THAT(events, IsEmpty());
    EXPECT_FALSE(view->hidden);
}

TEST_F(RegisterControllerTest, APageThatCannotBeOpenedLeavesTheStepAsItIs) {
    fake.workspace.canOpen = false;
    enter();
    controller.buttonPressed(nullptr);
    EXPECT_FALSE(view->hidden);
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
}

TEST_F(RegisterControllerTest, NamesTheAddressThatCouldNotBeOpenedUntilItIsOpened) {
    fake.bundle.tables["Localizable"]["register_url"] = "https://acme.example/register";
    enter();
    EXPECT_EQ(controller.unopenedAddress(), "");
    fake.workspace.canOpen = false;
    controller.buttonPressed(nullptr);
    EXPECT_EQ(controller.unopenedAddress(), "https://acme.example/register");
    fake.workspace.canOpen = true;
    controller.buttonPressed(nullptr);
    EXPECT_EQ(controller.unopenedAddress(), "");
}

TEST_F(RegisterControllerTest, ShowsItsViewWhileItIsCurrentAndSharesItNoLonger) {
    enter();
    EXPECT_FALSE(view->hidden);
    controller.didProceed(1);
    EXPECT_TRUE(view->hidden);
    EXPECT_EQ(view.use_count(), 1);
    EXPECT_EQ(model.use_count(), 1);
}

TEST_F(RegisterControllerTest, WorksWithoutViewAndModel) {
    main.recordAnnouncements();
    controller.didEnterWithModel(nullptr, nullptr, &main, 1);
    controller.didProceed(1);
    EXPECT_THAT(events, ElementsAre("will informativeText", "will successfulInstall",
                                    "did informativeText", "did successfulInstall"));
}

}  // namespace
}  // namespace installer::test

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "steps/licence/LicenseController.h"
#include "steps/licence/LicenseModel.h"
#include "tests/support/FakeMainController.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LicenseControllerTest : public testing::Test {
  protected:
    LicenseControllerTest() {
        fake.bundle.tables["Localizable"] = {{"agree_message", "Do you agree?"},
                                             {"agree_information", "You have to."},
                                             {"agree_button", "Agree"},
                                             {"disagree_button", "Disagree"}};
    }

    FakePlatform fake;
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
    std::shared_ptr<LicenseModel> model = std::make_shared<LicenseModel>(fake.platform);
    std::vector<std::string> events;
    FakeMainController main{events};
    LicenseController controller{fake.platform};
};

TEST_F(LicenseControllerTest, BothButtonsAreAlwaysEnabled) {
    EXPECT_TRUE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
    fake.alerts.answer = 1;
    EXPECT_FALSE(controller.canProceed(1));
    EXPECT_TRUE(controller.enableForward());
    EXPECT_TRUE(controller.enableBackward());
}

TEST_F(LicenseControllerTest, GoingBackIsNeverAskedAbout) {
    EXPECT_TRUE(controller.canProceed(-1));
    EXPECT_TRUE(controller.canProceed(-3));
    EXPECT_THAT(fake.alerts.shown, IsEmpty());
}

TEST_F(LicenseControllerTest, APressBehindTheOpenQuestionAsksNothingAndMovesNothing) {
    bool inner = true;
    fake.alerts.whenShown = [&] {
        if (fake.alerts.shown.size() == 1) inner = controller.canProceed(1);
    };
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_FALSE(inner);
    EXPECT_THAT(fake.alerts.shown, SizeIs(1));
}

TEST_F(LicenseControllerTest, GoingForwardAsksForTheAgreement) {
    EXPECT_TRUE(controller.canProceed(1));
    ASSERT_THAT(fake.alerts.shown, SizeIs(1));
    const Alert& alert = fake.alerts.shown.front();
    EXPECT_EQ(alert.identifier, "license-agreement");
    EXPECT_EQ(alert.style, Alert::Style::informational);
    EXPECT_EQ(alert.title, "Do you agree?");
    EXPECT_EQ(alert.message, "You have to.");
    EXPECT_THAT(alert.buttons, ElementsAre("Agree", "Disagree"));
}

TEST_F(LicenseControllerTest, StayingInPlaceAsksToo) {
    EXPECT_TRUE(controller.canProceed(0));
    EXPECT_THAT(fake.alerts.shown, SizeIs(1));
}

TEST_F(LicenseControllerTest, OnceGivenTheAgreementHolds) {
    EXPECT_TRUE(controller.canProceed(1));
    controller.didProceed(1);
    controller.didEnterWithModel(model, view, &main, -1);
    fake.alerts.answer = 1;
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_THAT(fake.alerts.shown, SizeIs(1));
}

TEST_F(LicenseControllerTest, ARefusalIsNoAgreementAndIsAskedAgain) {
    fake.alerts.answer = 1;
    EXPECT_FALSE(controller.canProceed(1));
    EXPECT_FALSE(controller.canProceed(1));
    EXPECT_THAT(fake.alerts.shown, SizeIs(2));
    fake.alerts.answer = 0;
    EXPECT_TRUE(controller.canProceed(1));
}

TEST_F(LicenseControllerTest, MissingTextsAreEmpty) {
    fake.bundle.tables.clear();
    EXPECT_TRUE(controller.canProceed(1));
    EXPECT_EQ(fake.alerts.shown.front().title, "");
    EXPECT_THAT(fake.alerts.shown.front().buttons, ElementsAre("", ""));
}

TEST_F(LicenseControllerTest, ASheetAgreesWithItsFirstButtonOnly) {
    fake.alerts.answer = 1;
    controller.sheetDidEnd({}, 1001, nullptr);
    EXPECT_FALSE(controller.canProceed(1));
    controller.sheetDidEnd({}, 1000, nullptr);
    EXPECT_TRUE(controller.canProceed(1));
    controller.sheetDidEnd({}, 0, nullptr);
    EXPECT_FALSE(controller.canProceed(1));
}

TEST_F(LicenseControllerTest, ShowsItsViewWhileItIsCurrentAndSharesItNoLonger) {
    controller.didEnterWithModel(model, view, &main, 1);
    EXPECT_FALSE(view->hidden);
    controller.didProceed(1);
    EXPECT_TRUE(view->hidden);
    EXPECT_EQ(view.use_count(), 1);
    EXPECT_EQ(model.use_count(), 1);
}

TEST_F(LicenseControllerTest, WorksWithoutAView) {
    controller.didEnterWithModel(model, nullptr, &main, 1);
    EXPECT_TRUE(controller.canProceed(1));
    controller.didProceed(1);
    EXPECT_EQ(model.use_count(), 1);
}

TEST_F(LicenseControllerTest, AnnouncesNothing) {
    main.recordAnnouncements();
    controller.didEnterWithModel(model, view, &main, 1);
    EXPECT_TRUE(controller.canProceed(1));
    controller.didProceed(1);
    EXPECT_THAT(events, IsEmpty());
}

}  // namespace
}  // namespace installer::test

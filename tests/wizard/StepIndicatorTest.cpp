#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FakeWindow.h"
#include "wizard/StepIndicator.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

class StepIndicatorTest : public testing::Test {
  protected:
    StepIndicatorTest() {
        fake.bundle.resources = {{"DotBlue.tiff", "/blue"}, {"DotGray.tiff", "/gray"}};
        row().views["stepIndicatorView"] = std::make_shared<FakeView>();
        row().views["stepIndicatorView"]->extent = {.width = 10, .height = 24.5};
        list->extent = {.width = 180, .height = 400};
    }

    FakeInterfaceParts& row() { return fake.interfaces.prepared["Step Indicator"]; }
    std::unique_ptr<StepIndicator> load() { return StepIndicator::load(fake.windowPlatform); }

    // The parts of the last row that was loaded.
    FakeInterfaceParts& parts() { return *fake.interfaces.loaded["Step Indicator"].back(); }
    FakeView& view() { return *parts().views["stepIndicatorView"]; }
    const Image& dot() { return parts().imageViews["indicator"]->image; }
    FakeTextField& label() { return *parts().textFields["label"]; }

    FakeWindowPlatform fake;
    std::shared_ptr<FakeView> list = std::make_shared<FakeView>();
};

TEST_F(StepIndicatorTest, OwnsItsDescription) {
    const auto indicator = load();
    EXPECT_EQ(parts().owner, indicator.get());
}

TEST_F(StepIndicatorTest, LooksForItsDotsBeforeItsDescription) {
    std::vector<std::string> asked;
    const auto note = [&asked](const std::string& what) { asked.push_back(what); };
    fake.bundle.whenAsked = note;
    fake.interfaces.whenAsked = note;
    load();
    EXPECT_THAT(asked, ElementsAre("DotBlue.tiff", "DotGray.tiff", "Step Indicator"));
}

TEST_F(StepIndicatorTest, TheDotOfTheCurrentStepHasANameOfItsOwn) {
    fake.bundle.tables["Localizable"] = {{"step_picture_name", "Step"},
                                         {"current_step_picture_name", "Current step"}};
    const auto indicator = load();
    const std::string& name = parts().imageViews["indicator"]->accessibleName;
    indicator->setCurrentStep(true);
    EXPECT_EQ(name, "Current step");
    indicator->setCurrentStep(false);
    EXPECT_EQ(name, "Step");
}

TEST_F(StepIndicatorTest, ADescriptionThatCannotBeLoadedGivesNoIndicator) {
    fake.interfaces.unloadable = {"Step Indicator"};
    EXPECT_EQ(load(), nullptr);
}

TEST_F(StepIndicatorTest, IsAsHighAsItsDescriptionSays) {
    EXPECT_EQ(load()->height(), 24.5F);
}

TEST_F(StepIndicatorTest, WithoutAViewItHasNoHeightAndShowsNothing) {
    row().missing = {"stepIndicatorView", "indicator", "label"};
    const auto indicator = load();
    indicator->placeInParentView(list, {.x = 0, .y = 1});
    indicator->setText("Licence");
    indicator->setCurrentStep(true);
    EXPECT_EQ(indicator->height(), 0.0F);
    EXPECT_TRUE(list->subviews.empty());
}

TEST_F(StepIndicatorTest, IsPlacedInTheListAsWideAsTheListAndAsHighAsItself) {
    const auto indicator = load();
    indicator->placeInParentView(list, {.x = 3, .y = 70.25});
    EXPECT_THAT(list->subviews, ElementsAre(parts().views["stepIndicatorView"]));
    EXPECT_EQ(view().origin, (Point{.x = 3, .y = 70.25}));
    EXPECT_EQ(view().extent, (Size{.width = 180, .height = 24.5}));
    EXPECT_FALSE(view().hidden);
}

TEST_F(StepIndicatorTest, ANewlyPlacedRowIsGreyEvenWhenItWasTheCurrentOne) {
    const auto indicator = load();
    indicator->setCurrentStep(true);
    indicator->placeInParentView(list, {});
    EXPECT_EQ(dot(), Image{"/gray"});
    EXPECT_EQ(label().weight, TextField::Weight::regular);
    EXPECT_EQ(label().color, (Color{128, 128, 128}));
}

TEST_F(StepIndicatorTest, WithoutAListItIsPlacedNowhereAndGrey) {
    const auto indicator = load();
    indicator->placeInParentView(nullptr, {.x = 5, .y = 5});
    EXPECT_EQ(view().origin, Point());
    EXPECT_EQ(dot(), Image{"/gray"});
}

TEST_F(StepIndicatorTest, TheCurrentStepIsBoldAndBlackWithABlueDot) {
    const auto indicator = load();
    indicator->setCurrentStep(true);
    EXPECT_EQ(dot(), Image{"/blue"});
    EXPECT_EQ(label().weight, TextField::Weight::bold);
    EXPECT_EQ(label().color, (Color{0, 0, 0}));
}

TEST_F(StepIndicatorTest, ADotThatTheBundleLacksIsNoPicture) {
    fake.bundle.resources.clear();
    const auto indicator = load();
    indicator->setCurrentStep(true);
    EXPECT_EQ(dot(), Image());
}

TEST_F(StepIndicatorTest, ShowsItsText) {
    const auto indicator = load();
    indicator->setText("Licence");
    EXPECT_EQ(label().text, "Licence");
    indicator->setText("");
    EXPECT_EQ(label().text, "");
}

TEST_F(StepIndicatorTest, WithoutATextItKeepsTheLabelOfTheDescription) {
    const auto indicator = load();
    indicator->setText(std::nullopt);
    EXPECT_EQ(label().text, "from the description");
}

}  // namespace
}  // namespace installer::test

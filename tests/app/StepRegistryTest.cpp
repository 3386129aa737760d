#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/StepRegistry.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StepRegistryTest : public testing::Test {
  protected:
    StepRegistryTest() {
        list->extent = {.width = 180, .height = 400};
        row->extent = {.width = 10, .height = 30};
        // Every row that is loaded is this one, so a test looks at it after each registration.
        fake.interfaces.prepared["Step Indicator"].views["stepIndicatorView"] = row;
        registry.setParents(dynamicView, list);
    }

    Point placeOfRow(std::int32_t step) {
        registry.addStep(nullptr, nullptr, model, step);
        return row->origin;
    }

    FakeWindowPlatform fake;
    Lines events;
    std::shared_ptr<FakeView> dynamicView = std::make_shared<FakeView>();
    std::shared_ptr<FakeView> list = std::make_shared<FakeView>();
    std::shared_ptr<FakeView> row = std::make_shared<FakeView>();
    std::shared_ptr<FakeView> view = std::make_shared<FakeView>();
    std::shared_ptr<ScriptedStep> controller = std::make_shared<ScriptedStep>(7, events);
    std::shared_ptr<ScriptedModel> model = std::make_shared<ScriptedModel>();
    StepRegistry registry{fake.windowPlatform};
};

TEST_F(StepRegistryTest, ANumberWithoutAStepHasNothing) {
    for (const std::int32_t step : {-1, 0, 5}) {
        EXPECT_EQ(registry.getViewForStep(step), nullptr);
        EXPECT_EQ(registry.getControllerForStep(step), nullptr);
        EXPECT_EQ(registry.getModelForStep(step), nullptr);
        EXPECT_EQ(registry.getIndicatorForStep(step), nullptr);
    }
}

TEST_F(StepRegistryTest, KeepsEverythingOfAStepUnderItsNumber) {
    registry.addStep(view, controller, model, 7);
    EXPECT_EQ(registry.getViewForStep(7), view);
    EXPECT_EQ(registry.getControllerForStep(7), controller);
    EXPECT_EQ(registry.getModelForStep(7), model);
    EXPECT_NE(registry.getIndicatorForStep(7), nullptr);
    EXPECT_EQ(registry.getViewForStep(6), nullptr);
}

TEST_F(StepRegistryTest, TheViewIsHiddenInTheAreaOfTheCurrentStep) {
    view->hidden = false;
    registry.addStep(view, controller, model, 0);
    EXPECT_TRUE(view->hidden);
    EXPECT_THAT(dynamicView->subviews, ElementsAre(view));
}

TEST_F(StepRegistryTest, AStepWithoutAModelHasNoRow) {
    registry.addStep(view, controller, nullptr, 0);
    EXPECT_EQ(registry.getIndicatorForStep(0), nullptr);
    EXPECT_THAT(list->subviews, IsEmpty());
    EXPECT_EQ(registry.getControllerForStep(0), controller);
}

TEST_F(StepRegistryTest, AStepWithoutAControllerHasARow) {
    registry.addStep(view, nullptr, model, 0);
    EXPECT_NE(registry.getIndicatorForStep(0), nullptr);
    EXPECT_EQ(registry.getControllerForStep(0), nullptr);
}

TEST_F(StepRegistryTest, RowsAreStackedFromTheTopByNumberWhateverIsRegisteredFirst) {
    EXPECT_EQ(placeOfRow(3), (Point{.x = 0, .y = 280}));
    EXPECT_EQ(placeOfRow(0), (Point{.x = 0, .y = 370}));
    EXPECT_EQ(placeOfRow(4), (Point{.x = 0, .y = 250}));
    EXPECT_EQ(placeOfRow(1), (Point{.x = 0, .y = 340}));
}

TEST_F(StepRegistryTest, ARowBelowTheEndOfTheListIsPlacedThereAllTheSame) {
    list->extent.height = 45;
    EXPECT_EQ(placeOfRow(1), (Point{.x = 0, .y = -15}));
}

TEST_F(StepRegistryTest, RowsSpanTheListAndShowTheModelsLabelInGrey) {
    fake.bundle.resources = {{"DotBlue.tiff", "/blue"}, {"DotGray.tiff", "/gray"}};
    registry.addStep(view, controller, model, 2);
    EXPECT_EQ(row->extent, (Size{.width = 180, .height = 30}));
    auto& parts = *fake.interfaces.loaded["Step Indicator"].front();
    EXPECT_EQ(parts.textFields["label"]->text, "Row");
    EXPECT_EQ(parts.imageViews["indicator"]->image, Image{"/gray"});
}

TEST_F(StepRegistryTest, ARowThatCannotBeMadeLeavesTheStepWithoutOne) {
    fake.interfaces.unloadable = {"Step Indicator"};
    registry.addStep(view, controller, model, 2);
    EXPECT_EQ(registry.getIndicatorForStep(2), nullptr);
    EXPECT_EQ(registry.getModelForStep(2), model);
}

TEST_F(StepRegistryTest, WorksWithoutAnyPartOfTheWindow) {
    registry.setParents(nullptr, nullptr);
    registry.addStep(nullptr, controller, model, 2);
    registry.addStep(view, controller, model, 3);
    EXPECT_EQ(registry.getViewForStep(2), nullptr);
    EXPECT_EQ(registry.getViewForStep(3), view);
    EXPECT_TRUE(view->hidden);
    EXPECT_NE(registry.getIndicatorForStep(2), nullptr);
}

}  // namespace
}  // namespace installer::test

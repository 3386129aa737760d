#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "wizard/BoundObject.h"

namespace {

using namespace installer;
using ::testing::ElementsAre;

class Lamp : public BoundObject {
  public:
    Lamp() {
        bindProperty("label", [] { return PropertyValue(std::string("Lamp")); });
        bindSwitch("on", [this] { return on; }, [this](bool value) { on = value; });
        bindList(
            "bulbs", [this] { return std::vector<ListRow>{{.title = "Bulb", .checked = bulb}}; },
            [this](std::size_t row, bool checked) {
                if (row == 0) bulb = checked;
            });
        bindAction("press", [this](const void* sender) { pressedBy = sender; });
    }
    using BoundObject::propertyDidChange;

    bool on = false;
    bool bulb = false;
    const void* pressedBy = nullptr;
};

TEST(BoundObject, PropertiesAreReadByName) {
    const Lamp lamp;
    EXPECT_EQ(lamp.valueForProperty("label"), PropertyValue(std::string("Lamp")));
    EXPECT_EQ(lamp.valueForProperty("on"), PropertyValue(false));
}

TEST(BoundObject, ANameThatIsNotKnownHasNoValueAndDoesNothing) {
    Lamp lamp;
    EXPECT_EQ(lamp.valueForProperty("heat"), PropertyValue());
    lamp.setValueForProperty("heat", true);
    lamp.setValueForProperty("label", true);
    lamp.setRowChecked("label", 0, true);
    lamp.performAction("on", this);
    EXPECT_FALSE(lamp.on);
    EXPECT_EQ(lamp.pressedBy, nullptr);
}

TEST(BoundObject, ASwitchTakesTruthsOnly) {
    Lamp lamp;
    lamp.setValueForProperty("on", true);
    EXPECT_TRUE(lamp.on);
    lamp.setValueForProperty("on", std::string("off"));
    EXPECT_TRUE(lamp.on);
}

TEST(BoundObject, RowsOfAListAreTicked) {
    Lamp lamp;
    lamp.setRowChecked("bulbs", 0, true);
    EXPECT_EQ(lamp.valueForProperty("bulbs"),
              PropertyValue(std::vector<ListRow>{{.title = "Bulb", .checked = true}}));
}

TEST(BoundObject, ActionsLearnWhoSentThem) {
    Lamp lamp;
    lamp.performAction("press", &lamp);
    EXPECT_EQ(lamp.pressedBy, &lamp);
}

TEST(BoundObject, NothingThatIsShownCanBeEdited) {
    Lamp lamp;
    EXPECT_FALSE(lamp.shouldChangeText("x"));
}

TEST(BoundObject, ObserversHearTheNamesUntilTheyLeave) {
    Lamp lamp;
    std::vector<std::string> heard;
    Subscription second;
    const Subscription first = lamp.observeProperties([&](std::string_view property) {
        heard.push_back("first " + std::string(property));
        second.cancel();
    });
    second = lamp.observeProperties(
        [&](std::string_view property) { heard.push_back("second " + std::string(property)); });
    lamp.propertyDidChange("on");
    EXPECT_THAT(heard, ElementsAre("first on"));
}

TEST(BoundObject, AHandleMayOutliveTheObject) {
    Subscription handle;
    {
        Lamp lamp;
        handle = lamp.observeProperties([](std::string_view) {});
    }
    handle.cancel();
}

}  // namespace

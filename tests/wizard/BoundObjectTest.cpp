#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ObserverReentrancy.h"
#include "wizard/BoundObject.h"

namespace {

using namespace installer;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class Lamp : public Observable, public BoundObject {
  public:
    Lamp() {
        bindConstant("label", [] { return PropertyValue(std::string("Lamp")); });
        bindSwitch("on", [this] { return on; }, [this](bool value) { on = value; });
        bindList(
            "bulbs", [this] { return std::vector<ListRow>{{.title = "Bulb", .checked = bulb}}; },
            [this](std::size_t row, bool checked) {
                if (row == 0) bulb = checked;
            });
        bindProperty("color", [] { return PropertyValue(std::string("white")); },
                     {"bulbs", "weather"});
        bindProperty("warmth", [] { return PropertyValue(); }, {"bulbs"});
        bindAction("press", [this](const void* sender) { pressedBy = sender; });
    }

    bool on = false;
    bool bulb = false;
    const void* pressedBy = nullptr;

  private:
    Subscription ownAnnouncements_ = follow(*this);
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
    lamp.didChange("on");
    EXPECT_THAT(heard, ElementsAre("first on"));
}

TEST(BoundObject, ControlsReadAPropertyAgainAfterItsChangeAndNotBefore) {
    Lamp lamp;
    std::vector<std::string> heard;
    const Subscription handle =
        lamp.observeProperties([&](std::string_view property) { heard.emplace_back(property); });
    lamp.willChange("bulbs");
    EXPECT_THAT(heard, IsEmpty());
    lamp.didChange("bulbs");
    lamp.didChange("weather");
    lamp.didChange("on");
    EXPECT_THAT(heard, ElementsAre("bulbs", "color", "warmth", "weather", "color", "on"));
}

TEST(BoundObject, ControlsReadAgainWhatAFollowedObjectAnnouncesUntilItIsFollowedNoMore) {
    class Room : public BoundObject {
      public:
        using BoundObject::follow;
    };
    Room room;
    Observable model;
    std::vector<std::string> heard;
    const Subscription handle =
        room.observeProperties([&](std::string_view property) { heard.emplace_back(property); });
    Subscription followed = room.follow(model);
    model.didChange("text");
    followed.cancel();
    model.didChange("picture");
    EXPECT_THAT(heard, ElementsAre("text"));
}

TEST(BoundObject, KnowsItsPropertiesAndWhichOfThemAreConstant) {
    const Lamp lamp;
    std::vector<std::string> changing;
    std::vector<std::string> constant;
    for (const auto& property : lamp.boundProperties()) {
        (property.isConstant ? constant : changing).push_back(property.name);
    }
    EXPECT_THAT(changing, UnorderedElementsAre("bulbs", "color", "on", "warmth"));
    EXPECT_THAT(constant, ElementsAre("label"));
}

TEST(BoundObject, AnActionMayDestroyTheObject) {
    class Door : public BoundObject {
      public:
        Door() {
            bindAction("close", [text = std::string(100, 'x')](const void* sender) {
                *static_cast<std::unique_ptr<Door>*>(const_cast<void*>(sender)) = nullptr;
                EXPECT_EQ(text.size(), 100U);
            });
        }
    };
    auto door = std::make_unique<Door>();
    door->performAction("close", &door);
    EXPECT_EQ(door, nullptr);
}

TEST(BoundObject, AHandleMayOutliveTheObject) {
    Subscription handle;
    {
        Lamp lamp;
        handle = lamp.observeProperties([](std::string_view) {});
    }
    handle.cancel();
}

class LampSubject {
  public:
    Subscription observe(std::function<void()> observer) {
        return lamp_->observeProperties(
            [observer = std::move(observer)](std::string_view) { observer(); });
    }
    void notify() { lamp_->didChange("on"); }
    void destroy() { lamp_.reset(); }

  private:
    std::unique_ptr<Lamp> lamp_ = std::make_unique<Lamp>();
};

}  // namespace

namespace installer::test {
namespace {

INSTANTIATE_TYPED_TEST_SUITE_P(BoundObject, ObserverReentrancy, LampSubject);

}  // namespace
}  // namespace installer::test

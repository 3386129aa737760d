#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/display/DisplayAlerts.h"
#include "tests/support/AlertsOnlyModule.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class DisplayAlertsTest : public testing::Test {
  protected:
    DisplayAlertsTest() { module.shown.answer = 1; }

    std::size_t ask() { return alerts.runModal(alert); }

    const Alert alert{"question", Alert::Style::warning, "Problem", "With /a", {"Proceed", "Stop"}};
    std::map<std::string, std::string> environment;
    RecordingLog log;
    AlertsOnlyModule module;
    bool canLoad = true;
    int loads = 0;
    DisplayAlerts alerts{log,
                         [this](const std::string& name) -> std::optional<std::string> {
                             const auto found = environment.find(name);
                             if (found == environment.end()) return std::nullopt;
                             return found->second;
                         },
                         [this]() -> WindowModule* {
                             ++loads;
                             return canLoad ? &module : nullptr;
                         }};
};

TEST_F(DisplayAlertsTest, WithoutADisplayTheModuleIsNotLoaded) {
    environment["DISPLAY"] = "";
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(loads, 0);
    EXPECT_THAT(log.lines, ElementsAre("Problem: With /a"));
}

TEST_F(DisplayAlertsTest, AreAskedOnTheDisplayAndStandInTheLog) {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        environment = {{variable, "x"}};
        EXPECT_EQ(ask(), 1u);
    }
    EXPECT_THAT(module.shown.shown, SizeIs(2));
    EXPECT_EQ(module.shown.shown.front().identifier, "question");
    EXPECT_THAT(log.lines, ElementsAre("Problem: With /a", "Problem: With /a"));
}

TEST_F(DisplayAlertsTest, LoadTheModuleForTheFirstAlertOnly) {
    environment["DISPLAY"] = ":7";
    EXPECT_EQ(loads, 0);
    EXPECT_EQ(ask(), 1u);
    EXPECT_EQ(ask(), 1u);
    EXPECT_EQ(loads, 1);
}

TEST_F(DisplayAlertsTest, StayLinesOfTheLogWhereTheModuleCannotBeLoaded) {
    environment["DISPLAY"] = ":7";
    canLoad = false;
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(loads, 1);
    EXPECT_THAT(log.lines, SizeIs(2));
}

}  // namespace
}  // namespace installer::test

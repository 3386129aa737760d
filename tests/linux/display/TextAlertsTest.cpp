#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/display/TextAlerts.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

TEST(TextAlerts, LogsTitleAndMessageAndPressesTheFirstButton) {
    RecordingLog log;
    TextAlerts alerts(log);
    const Alert alert{"install-error",
                      Alert::Style::warning,
                      "Problem",
                      "Could not install /a",
                      {"Proceed", "Stop"}};
    EXPECT_EQ(alerts.runModal(alert), 0u);
    EXPECT_THAT(log.lines, ElementsAre("Problem: Could not install /a"));
}

TEST(TextAlerts, LeavesOutWhatIsEmpty) {
    RecordingLog log;
    TextAlerts alerts(log);
    EXPECT_EQ(alerts.runModal({"", Alert::Style::warning, "", "Only a message", {}}), 0u);
    EXPECT_EQ(alerts.runModal({"", Alert::Style::warning, "Only a title", "", {}}), 0u);
    EXPECT_THAT(log.lines, ElementsAre("Only a message", "Only a title"));
}

}  // namespace
}  // namespace installer::test

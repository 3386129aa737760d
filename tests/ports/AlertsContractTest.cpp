// What all alerts promise that somebody sees.

#include "tests/ports/AlertsContract.h"

namespace installer::test {

TEST_P(AlertsContract, TheAnswerIsThePlaceOfThePressedButton) {
    const Alert question{"question", Alert::Style::warning, "Problem", "With /a", {"Go", "Stop"}};
    for (std::size_t button = 0; button < question.buttons.size(); ++button) {
        scene_->willPress(question, button);
        EXPECT_EQ(scene_->alerts().runModal(question), button);
    }
}

TEST_P(AlertsContract, EachAlertIsAskedByItself) {
    const Alert first{"first", Alert::Style::warning, "One", "Text", {"A", "B", "C"}};
    const Alert second{"second", Alert::Style::informational, "", "Text", {"OK"}};
    scene_->willPress(first, 2);
    EXPECT_EQ(scene_->alerts().runModal(first), 2U);
    scene_->willPress(second, 0);
    EXPECT_EQ(scene_->alerts().runModal(second), 0U);
}

}  // namespace installer::test

#include <QPalette>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "qt/theme/ColorScheme.h"
#include "qt/theme/ReadableColor.h"
#include "qt/theme/WindowStyle.h"

namespace {

using namespace installer;

// Most people can read a text of the one contrast with ease, and one of the other with some effort.
constexpr double forTexts = 7;
constexpr double forQuietTexts = 4.5;
constexpr double forSigns = 3;

struct Look {
    std::string name;
    QPalette palette;
};

class PaletteContrast : public testing::TestWithParam<Look> {
  protected:
    [[nodiscard]] QColor color(QPalette::ColorRole role) const {
        return GetParam().palette.color(QPalette::Active, role);
    }
    [[nodiscard]] double between(QPalette::ColorRole one, QPalette::ColorRole other) const {
        return contrast(color(one), color(other));
    }
};

TEST_P(PaletteContrast, TextsCanBeReadWithEase) {
    EXPECT_GE(between(QPalette::WindowText, QPalette::Window), forTexts);
    EXPECT_GE(between(QPalette::Text, QPalette::Base), forTexts);
    EXPECT_GE(between(QPalette::Text, QPalette::AlternateBase), forTexts);
    EXPECT_GE(between(QPalette::ButtonText, QPalette::Button), forTexts);
    EXPECT_GE(between(QPalette::ToolTipText, QPalette::ToolTipBase), forTexts);
}

TEST_P(PaletteContrast, QuietAndMarkedTextsCanBeRead) {
    for (const auto ground : {QPalette::Window, QPalette::Base}) {
        EXPECT_GE(contrast(quietColor(color(QPalette::Text), color(ground)), color(ground)),
                  forQuietTexts);
        EXPECT_GE(between(QPalette::Link, ground), forQuietTexts);
    }
    EXPECT_GE(between(QPalette::HighlightedText, QPalette::Highlight), forQuietTexts);
}

TEST_P(PaletteContrast, TheStepsAtTheSideCanBeTold) {
    // The current step is black on white by rule, the others are grey.
    const QColor ground = color(QPalette::Base);
    EXPECT_GE(contrast(counterpart(Qt::black, ground), ground), forTexts);
    EXPECT_GE(contrast(counterpart(Qt::gray, ground), ground), forQuietTexts);
}

TEST_P(PaletteContrast, TheRingOfTheFocusCanBeSeen) {
    const QColor ground = color(QPalette::Window);
    EXPECT_GE(contrast(readableColor(color(QPalette::Highlight), ground), ground), forSigns);
}

TEST_P(PaletteContrast, ADisabledTextCanBeToldFromAnEnabledOneAndIsNotGone) {
    const QColor ground = GetParam().palette.color(QPalette::Disabled, QPalette::Window);
    const QColor disabled = GetParam().palette.color(QPalette::Disabled, QPalette::WindowText);
    EXPECT_LT(contrast(disabled, ground), between(QPalette::WindowText, QPalette::Window));
    EXPECT_GE(contrast(disabled, ground), 1.5);
}

/// What the toolkit's own style makes of its palette.
QPalette lightLookPalette() {
    WindowStyle style;
    QPalette palette = style.standardPalette();
    style.polish(palette);
    return palette;
}

INSTANTIATE_TEST_SUITE_P(Looks, PaletteContrast,
                         testing::Values(Look{"light", lightLookPalette()},
                                         Look{"dark", darkPalette()}),
                         [](const auto& test) { return test.param.name; });

}  // namespace

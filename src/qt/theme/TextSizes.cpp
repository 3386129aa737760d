#include "qt/theme/TextSizes.h"

#include <algorithm>
#include <cmath>

namespace installer {

namespace {

constexpr double headingPoints = 14;
constexpr double headingScale = 1.4;
constexpr double smallScale = 0.92;

/// A desktop may give its font's size in pixels alone.
void scale(QFont& font, double factor, double leastPoints) {
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(std::max(leastPoints, font.pointSizeF() * factor));
    } else if (font.pixelSize() > 0) {
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * factor)));
    }
}

}  // namespace

QFont fontOfSize(TextSize size, const QFont& desktopFont) {
    QFont font = desktopFont;
    if (size == TextSize::heading) {
        scale(font, headingScale, headingPoints);
    } else if (size == TextSize::small) {
        scale(font, smallScale, 0);
    }
    if (size == TextSize::heading || size == TextSize::strong) font.setBold(true);
    return font;
}

}  // namespace installer

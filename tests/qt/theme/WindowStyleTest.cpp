#include <QCheckBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "qt/theme/ColorScheme.h"
#include "qt/theme/ReadableColor.h"
#include "qt/theme/WindowStyle.h"

namespace {

using namespace installer;

TEST(WindowStyle, TheFrameOfAnEmptyCheckBoxShowsOnADarkGround) {
    WindowStyle style;
    QCheckBox box;
    QPalette dark(QColor(0x3a, 0x3a, 0x3e), QColor(0x2b, 0x2b, 0x2e));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    dark.setColor(QPalette::Text, QColor(0xee, 0xee, 0xf0));
    box.setPalette(dark);
    box.setStyle(&style);
    box.resize(box.sizeHint());
    const QImage seen = box.grab().toImage();
    double strongest = 1;
    for (int x = 0; x < seen.width(); ++x) {
        strongest = std::max(
            strongest, contrast(seen.pixelColor(x, seen.height() / 2), dark.color(QPalette::Base)));
    }
    EXPECT_GE(strongest, 3);
}

TEST(WindowStyle, AButtonHasRoomBesideItsText) {
    WindowStyle style;
    const std::unique_ptr<QStyle> toolkits(QStyleFactory::create("fusion"));
    QPushButton button("A text that is longer than the least width of a button");
    button.setStyle(toolkits.get());
    const QSize before = button.sizeHint();
    button.setStyle(&style);
    EXPECT_GE(button.sizeHint().width(), before.width() + 12);
    EXPECT_EQ(button.sizeHint().height(), before.height());
}

/// The contrast of what is written in the middle of a bar, which is nearly empty or nearly full.
double contrastOfPercentage(QPalette palette, Qt::LayoutDirection direction, int value) {
    WindowStyle style;
    style.polish(palette);
    QProgressBar bar;
    bar.setStyle(&style);
    bar.setPalette(palette);
    bar.setLayoutDirection(direction);
    bar.setAlignment(Qt::AlignCenter);
    bar.setValue(value);
    bar.resize(400, 24);
    const QImage seen = bar.grab().toImage();
    const QColor ground = seen.pixelColor(150, seen.height() / 2);
    double strongest = 1;
    for (int x = 170; x < 230; ++x) {
        for (int y = 6; y < 18; ++y) {
            strongest = std::max(strongest, contrast(seen.pixelColor(x, y), ground));
        }
    }
    return strongest;
}

TEST(WindowStyle, ThePercentageCanBeReadFromEitherSide) {
    for (const QPalette& palette : {WindowStyle().standardPalette(), darkPalette()}) {
        for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            EXPECT_GE(contrastOfPercentage(palette, direction, 4), 4.5) << direction;
            EXPECT_GE(contrastOfPercentage(palette, direction, 96), 4.5) << direction;
        }
    }
}

}  // namespace

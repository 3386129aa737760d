#include <QCheckBox>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

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

}  // namespace

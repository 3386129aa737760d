#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QTest>

#include <gtest/gtest.h>

#include "qt/controls/WaitingSign.h"
#include "qt/theme/ColorScheme.h"
#include "qt/theme/ReadableColor.h"

namespace {

using namespace installer;

class WaitingSignTest : public testing::Test {
  protected:
    QLabel label;
    WaitingSign* sign = nullptr;

    void SetUp() override {
        label.setFixedSize(48, 48);
        sign = new WaitingSign(label);
    }

    [[nodiscard]] qint64 shown() const { return label.pixmap(Qt::ReturnByValue).cacheKey(); }
};

TEST_F(WaitingSignTest, MovesWhileItWaitsAndCanBeSeen) {
    label.show();
    sign->setWaiting(true);
    const qint64 first = shown();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() != first; }));
}

TEST_F(WaitingSignTest, CanBeSeenInADarkWindowToo) {
    for (const QPalette& palette : {darkPalette(), QPalette(QColor(0xef, 0xef, 0xef))}) {
        label.setPalette(palette);
        sign->setWaiting(true);
        // At the beginning all dots are weak.
        QImage seen(48, 48, QImage::Format_RGB32);
        seen.fill(palette.color(QPalette::Window));
        QPainter(&seen).drawPixmap(0, 0, label.pixmap(Qt::ReturnByValue));
        EXPECT_GE(contrast(seen.pixelColor(24, 24), palette.color(QPalette::Window)), 2.5);
    }
}

TEST_F(WaitingSignTest, EndsWithACheckMark) {
    sign->setWaiting(true);
    sign->setWaiting(false);
    const QImage seen = label.pixmap(Qt::ReturnByValue).toImage();
    EXPECT_GT(seen.pixelColor(24, 8).green(), seen.pixelColor(24, 8).red());
}

}  // namespace

#include <QImage>
#include <QLabel>

#include <gtest/gtest.h>

#include "qt/dressing/DotLine.h"

namespace {

using namespace installer;

TEST(DotLine, ConnectsTheDotsAndNothingElse) {
    QWidget list;
    list.resize(100, 100);
    for (const int top : {10, 70}) {
        auto* dot = new QLabel(&list);
        dot->setProperty(DotLine::dotProperty, true);
        dot->setGeometry(20, top, 16, 16);
    }
    new DotLine(list);
    list.show();
    const QImage seen = list.grab().toImage();
    const QColor ground = list.palette().color(QPalette::Window);
    EXPECT_NE(seen.pixelColor(28, 50), ground);
    EXPECT_EQ(seen.pixelColor(28, 18), ground);
    EXPECT_EQ(seen.pixelColor(28, 95), ground);
    EXPECT_EQ(seen.pixelColor(60, 50), ground);
}

TEST(DotLine, AListWithOneDotHasNoLine) {
    QWidget list;
    list.resize(100, 100);
    auto* dot = new QLabel(&list);
    dot->setProperty(DotLine::dotProperty, true);
    dot->setGeometry(20, 10, 16, 16);
    new DotLine(list);
    list.show();
    EXPECT_EQ(list.grab().toImage().pixelColor(28, 50), list.palette().color(QPalette::Window));
}

}  // namespace

#include <gtest/gtest.h>

#include "qt/theme/ReadableColor.h"

namespace {

using namespace installer;

TEST(ReadableColor, ContrastIsMeasuredAsTheGuidelinesDo) {
    EXPECT_DOUBLE_EQ(contrast(Qt::black, Qt::white), 21);
    EXPECT_DOUBLE_EQ(contrast(Qt::red, Qt::red), 1);
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    EXPECT_DOUBLE_EQ(contrast(Qt::white, Qt::black), contrast(Qt::black, Qt::white));
}

TEST(ReadableColor, EveryColourBecomesReadableOnEveryGround) {
    for (int ground = 0; ground < 256; ground += 15) {
        for (int wanted = 0; wanted < 256; wanted += 15) {
            const QColor on(ground, ground, ground);
            EXPECT_GE(contrast(readableColor(QColor(wanted, 0, 255 - wanted), on), on), 4.5)
                << wanted << " on " << ground;
        }
    }
}

TEST(ReadableColor, AReadableColourIsLeftAlone) {
    EXPECT_EQ(readableColor(QColor(200, 0, 0), Qt::white), QColor(200, 0, 0));
}

TEST(ReadableColor, QuietTextLiesBetweenTextAndGround) {
    const QColor onWhite = quietColor(Qt::black, Qt::white);
    EXPECT_GT(onWhite.lightness(), 60);
    EXPECT_GE(contrast(onWhite, Qt::white), 4.5);
    const QColor onDark = quietColor(Qt::white, QColor(30, 30, 32));
    EXPECT_LT(onDark.lightness(), 200);
    EXPECT_GE(contrast(onDark, QColor(30, 30, 32)), 4.5);
}

TEST(ReadableColor, BlackAndGreyHaveCounterpartsOnEveryGround) {
    const QColor dark(0x1e, 0x1e, 0x20);
    EXPECT_EQ(counterpart(Qt::black, Qt::white), QColor(Qt::black));
    EXPECT_GE(contrast(counterpart(Qt::black, dark), dark), 15);
    const QColor grey(128, 128, 128);
    for (const QColor& ground : {QColor(Qt::white), dark, QColor(0x2b, 0x2b, 0x2e)}) {
        EXPECT_GE(contrast(counterpart(Qt::black, ground), ground), 7);
        EXPECT_GE(contrast(counterpart(grey, ground), ground), 4.5);
        EXPECT_LT(contrast(counterpart(grey, ground), ground),
                  contrast(counterpart(Qt::black, ground), ground) / 2);
    }
}

TEST(ReadableColor, ACounterpartKeepsItsHue) {
    const QColor blue = counterpart(QColor(0, 0, 120), QColor(30, 30, 30));
    EXPECT_GT(blue.blue(), blue.red());
}

TEST(ReadableColor, AHairlineIsBetweenTextAndGroundAndNearerToTheGround) {
    EXPECT_GT(hairlineColor(Qt::black, Qt::white).lightness(), 180);
    EXPECT_LT(hairlineColor(Qt::white, Qt::black).lightness(), 75);
    EXPECT_NE(hairlineColor(Qt::white, Qt::black), QColor(Qt::black));
}

}  // namespace

#include <gtest/gtest.h>

#include "qt/theme/TextSizes.h"

namespace {

using namespace installer;

TEST(TextSizes, AreInOneOrderAtEverySizeOfTheDesktop) {
    for (double points = 5; points < 40; ++points) {
        QFont desktop;
        desktop.setPointSizeF(points);
        const double heading = fontOfSize(TextSize::heading, desktop).pointSizeF();
        EXPECT_GE(heading, 1.4 * points);
        EXPECT_GE(heading, 14);
        EXPECT_EQ(fontOfSize(TextSize::strong, desktop).pointSizeF(), points);
        EXPECT_EQ(fontOfSize(TextSize::body, desktop), desktop);
        EXPECT_LT(fontOfSize(TextSize::small, desktop).pointSizeF(), points);
    }
}

TEST(TextSizes, AFontWhoseSizeIsInPixelsIsScaledToo) {
    QFont desktop;
    desktop.setPixelSize(20);
    EXPECT_EQ(fontOfSize(TextSize::heading, desktop).pixelSize(), 28);
    EXPECT_LT(fontOfSize(TextSize::small, desktop).pixelSize(), 20);
}

TEST(TextSizes, HeadingsAndStrongTextsAreBold) {
    EXPECT_TRUE(fontOfSize(TextSize::heading, QFont()).bold());
    EXPECT_TRUE(fontOfSize(TextSize::strong, QFont()).bold());
    EXPECT_FALSE(fontOfSize(TextSize::small, QFont()).bold());
}

}  // namespace

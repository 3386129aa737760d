#include <QLabel>

#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;

class CaptionBindingTest : public InterfaceTest {
  protected:
    static double points() { return shown<QLabel>().font().pointSizeF(); }
};

TEST_F(CaptionBindingTest, AHeadingIsAsSmallAsACaptionWhileTheOwnerSaysSo) {
    show("QLabel", {{"textSize", "heading"}, {"captionBinding", "ended"}});
    const double heading = points();
    EXPECT_GT(heading, QApplication::font().pointSizeF());
    owner.change("ended", true);
    EXPECT_LT(points(), QApplication::font().pointSizeF());
    EXPECT_FALSE(shown<QLabel>().font().bold());
    owner.change("ended", false);
    EXPECT_EQ(points(), heading);
}

TEST_F(CaptionBindingTest, ItHoldsFromTheStart) {
    owner.values["ended"] = true;
    show("QLabel", {{"textSize", "heading"}, {"captionBinding", "ended"}});
    EXPECT_LT(points(), QApplication::font().pointSizeF());
}

TEST_F(CaptionBindingTest, FitsLabelsOnly) {
    show("QPushButton", {{"captionBinding", "ended"}});
    EXPECT_EQ(log.lines.size(), 1U);
}

}  // namespace

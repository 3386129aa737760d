#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>
#include <vector>

#include <gtest/gtest.h>

#include "qt/dressing/FocusRing.h"
#include "qt/theme/ColorScheme.h"
#include "qt/theme/ReadableColor.h"

namespace {

using namespace installer;

class FocusRingTest : public testing::Test {
  protected:
    QMainWindow window;
    QLineEdit* first = nullptr;
    QPushButton* second = nullptr;
    FocusRing* ring = nullptr;

    void SetUp() override {
        auto* contents = new QWidget;
        window.setCentralWidget(contents);
        window.resize(300, 200);
        first = new QLineEdit(contents);
        first->setGeometry(20, 20, 100, 30);
        second = new QPushButton(contents);
        second->setGeometry(20, 80, 100, 30);
        ring = new FocusRing(window);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
};

TEST_F(FocusRingTest, SurroundsTheControlThatKeysHaveMovedTheFocusTo) {
    second->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(ring->isVisible());
    EXPECT_TRUE(ring->geometry().contains(second->geometry()));
    first->setFocus(Qt::BacktabFocusReason);
    EXPECT_TRUE(ring->geometry().contains(first->geometry()));
}

TEST_F(FocusRingTest, SurroundsEveryKindOfControlAlsoOnAPageThatComesLater) {
    auto* page = new QWidget(window.centralWidget());
    page->setGeometry(140, 0, 160, 200);
    const std::vector<QWidget*> controls = {new QCheckBox("a", page),   new QListWidget(page),
                                            new QTextBrowser(page),     new QToolButton(page),
                                            new QPushButton("b", page), new QLineEdit(page)};
    int top = 10;
    for (QWidget* control : controls) {
        control->setFocusPolicy(Qt::StrongFocus);
        control->setGeometry(10, top, 100, 24);
        top += 30;
    }
    page->show();
    for (QWidget* control : controls) {
        control->setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(control->hasFocus());
        EXPECT_TRUE(ring->isVisible()) << control->metaObject()->className();
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        EXPECT_TRUE(ring->geometry().contains(place)) << control->metaObject()->className();
    }
}

TEST_F(FocusRingTest, CanBeSeenInLightAndDark) {
    for (const QPalette& palette : {darkPalette(), QPalette(QColor(0xef, 0xef, 0xef))}) {
        window.setPalette(palette);
        second->setFocus(Qt::TabFocusReason);
        const QPoint edge(ring->x() + ring->width() / 2, ring->y() + 1);
        const QColor seen = window.grab().toImage().pixelColor(edge);
        EXPECT_GE(contrast(seen, palette.color(QPalette::Window)), 3);
    }
}

TEST_F(FocusRingTest, AClickNeedsNone) {
    second->setFocus(Qt::TabFocusReason);
    first->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(ring->isVisible());
}

TEST_F(FocusRingTest, FollowsItsControlAndGoesWithIt) {
    second->setFocus(Qt::TabFocusReason);
    second->move(60, 120);
    EXPECT_TRUE(ring->geometry().contains(second->geometry()));
    second->hide();
    EXPECT_FALSE(ring->isVisible() && ring->geometry().contains(second->geometry()));
}

}  // namespace

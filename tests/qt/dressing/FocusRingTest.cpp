#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "qt/dressing/FocusRing.h"

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

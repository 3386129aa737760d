#include <QLineEdit>
#include <QTest>
#include <QTextBrowser>

#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

class GuardedTextTest : public InterfaceTest {
  protected:
    void SetUp() override {
        owner.values["licence"] = std::string("The licence.");
        show("QTextBrowser", {{"textBinding", "licence"}, {"guardsText", "true"}});
    }
    static QTextBrowser& text() { return shown<QTextBrowser>(); }
};

TEST_F(GuardedTextTest, ReturnAndEnterAreAskedAboutAsALineFeed) {
    QTest::keyClick(&text(), Qt::Key_Return);
    QTest::keyClick(&text(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_THAT(owner.told, ElementsAre("type \n", "type \n"));
}

TEST_F(GuardedTextTest, AHeldReturnIsAskedAboutOnce) {
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QTest::keyPress(&text(), Qt::Key_Return);
    QApplication::sendEvent(&text(), &repeated);
    EXPECT_THAT(owner.told, ElementsAre("type \n"));
}

TEST_F(GuardedTextTest, WhatIsTypedIsAskedAboutAndChangesNothing) {
    QTest::keyClick(&text(), Qt::Key_A);
    QTest::sendKeyEvent(QTest::Click, &text(), Qt::Key_unknown, QString::fromUtf8("ß"),
                        Qt::NoModifier);
    EXPECT_THAT(owner.told, ElementsAre("type a", "type ß"));
    EXPECT_EQ(text().toPlainText(), "The licence.");
}

TEST_F(GuardedTextTest, NeitherDeletingNorPastingChangesAnything) {
    text().selectAll();
    for (const auto key : {Qt::Key_Delete, Qt::Key_Backspace}) QTest::keyClick(&text(), key);
    QTest::keyClick(&text(), Qt::Key_X, Qt::ControlModifier);
    QTest::keyClick(&text(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(owner.told, IsEmpty());
    EXPECT_EQ(text().toPlainText(), "The licence.");
}

TEST_F(GuardedTextTest, TabLeavesTheText) {
    auto& window = named<QWidget>("window");
    auto* next = new QLineEdit(&named<QWidget>("contents"));
    next->show();
    text().setFocus();
    QTest::keyClick(&text(), Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), next);
    EXPECT_THAT(owner.told, IsEmpty());
}

}  // namespace

#include <QCheckBox>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "qt/dressing/Mnemonics.h"

namespace {

using namespace installer;

TEST(MnemonicsLetter, TakesTheFirstFreeLetterOfAWord) {
    QString taken;
    EXPECT_EQ(withMnemonic("Continue", taken), "&Continue");
    EXPECT_EQ(withMnemonic("Copy Log", taken), "Copy &Log");
    EXPECT_EQ(withMnemonic("Cl", taken), "Cl(&A)");
    EXPECT_EQ(taken, "cla");
}

TEST(MnemonicsLetter, AnyAlphabetHasLetters) {
    QString taken;
    EXPECT_EQ(withMnemonic(QStringLiteral("متابعة"), taken), QStringLiteral("&متابعة"));
    EXPECT_EQ(withMnemonic(QStringLiteral("Über"), taken), QStringLiteral("&Über"));
}

TEST(MnemonicsLetter, ALabelWithoutAnAlphabetGetsALetterInBrackets) {
    QString taken;
    EXPECT_EQ(withMnemonic(QStringLiteral("続ける"), taken), QStringLiteral("続ける(&A)"));
    EXPECT_EQ(withMnemonic(QStringLiteral("戻る"), taken), QStringLiteral("戻る(&B)"));
}

TEST(MnemonicsLetter, AnAmpersandOfTheLabelStaysOne) {
    QString taken;
    EXPECT_EQ(withMnemonic("&& More", taken), "&& &More");
}

class MnemonicsTest : public testing::Test {
  protected:
    QWidget window;
    QPushButton* back = nullptr;
    QPushButton* forward = nullptr;
    QCheckBox* box = nullptr;

    void SetUp() override {
        box = new QCheckBox("Go with && without", &window);
        back = new QPushButton("Go Back", &window);
        forward = new QPushButton("Go On", &window);
        box->move(0, 100);
        forward->move(0, 50);
        forward->setDefault(true);
        new Mnemonics(window);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void press(Qt::Key letter) {
        QTest::keyPress(&window, Qt::Key_Alt);
        QTest::keyClick(&window, letter, Qt::AltModifier);
        QTest::keyRelease(&window, Qt::Key_Alt);
    }
};

TEST_F(MnemonicsTest, TextsCarryMarksOnlyWhileAltIsHeld) {
    QTest::keyPress(&window, Qt::Key_Alt);
    EXPECT_EQ(back->text(), "&Go Back");
    EXPECT_EQ(forward->text(), "Go &On");
    EXPECT_EQ(box->text(), "Go &with && without");
    EXPECT_EQ(box->accessibleName(), "Go with & without");
    QTest::keyRelease(&window, Qt::Key_Alt);
    EXPECT_EQ(back->text(), "Go Back");
    EXPECT_EQ(box->text(), "Go with && without");
    EXPECT_EQ(box->accessibleName(), "");
}

TEST_F(MnemonicsTest, AltAndTheLetterPressTheButton) {
    int presses = 0;
    QObject::connect(forward, &QPushButton::clicked, &window, [&] { ++presses; });
    press(Qt::Key_O);
    EXPECT_TRUE(QTest::qWaitFor([&] { return presses == 1; }));
    press(Qt::Key_W);
    EXPECT_TRUE(QTest::qWaitFor([&] { return box->isChecked(); }));
}

TEST_F(MnemonicsTest, ATextThatThePressHasChangedStays) {
    QTest::keyPress(&window, Qt::Key_Alt);
    forward->setText("Finish");
    QTest::keyRelease(&window, Qt::Key_Alt);
    EXPECT_EQ(forward->text(), "Finish");
}

}  // namespace

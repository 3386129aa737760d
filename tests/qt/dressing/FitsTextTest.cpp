#include <QTextBrowser>

#include <gtest/gtest.h>

#include "qt/dressing/FitsText.h"

namespace {

using namespace installer;

TEST(FitsText, ABrowserIsAsHighAsItsTextAndNoHigher) {
    QTextBrowser browser;
    new FitsText(browser);
    browser.resize(300, 300);
    browser.show();
    browser.setPlainText("One line");
    const int low = browser.maximumHeight();
    EXPECT_LE(low, 64);
    browser.setPlainText("One line\nTwo\nThree\nFour\nFive\nSix\nSeven");
    EXPECT_GT(browser.maximumHeight(), low);
}

TEST(FitsText, ANarrowerBrowserMayBeHigher) {
    QTextBrowser browser;
    new FitsText(browser);
    browser.setPlainText(QString("Word ").repeated(60));
    browser.resize(600, 300);
    browser.show();
    const int wide = browser.maximumHeight();
    browser.resize(150, 300);
    EXPECT_GT(browser.maximumHeight(), wide);
}

TEST(FitsText, AShortTextIsReadAloudInPlaceOfTheName) {
    QTextBrowser browser;
    browser.setAccessibleName("Message");
    new FitsText(browser);
    EXPECT_EQ(browser.accessibleName(), "Message");
    browser.setPlainText("Two lines,\none sentence.");
    EXPECT_EQ(browser.accessibleName(), "Two lines, one sentence.");
    browser.setPlainText(QString("Word ").repeated(1000));
    EXPECT_EQ(browser.accessibleName(), "Message");
}

}  // namespace

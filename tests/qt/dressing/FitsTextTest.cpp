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

}  // namespace

#include <QTextBrowser>
#include <QTextDocument>
#include <QTextFrame>

#include <gtest/gtest.h>

#include "qt/dressing/ReadingColumn.h"

namespace {

using namespace installer;

double lineWidth(const QTextBrowser& browser) {
    const QTextFrameFormat format = browser.document()->rootFrame()->frameFormat();
    return browser.viewport()->width() - format.leftMargin() - format.rightMargin();
}

TEST(ReadingColumn, KeepsLinesShortInAWideWindow) {
    QTextBrowser browser;
    new ReadingColumn(browser);
    browser.setPlainText(QString("Word ").repeated(500));
    const double letter = QFontMetricsF(browser.font()).averageCharWidth();
    browser.resize(int(letter * 200), 300);
    browser.show();
    EXPECT_LE(lineWidth(browser), 80 * letter);
    EXPECT_GE(lineWidth(browser), 60 * letter);
    browser.setPlainText("Another text");
    EXPECT_LE(lineWidth(browser), 80 * letter);
}

TEST(ReadingColumn, UsesTheWholeWidthOfANarrowWindow) {
    QTextBrowser browser;
    new ReadingColumn(browser);
    browser.setPlainText(QString("Word ").repeated(500));
    const double letter = QFontMetricsF(browser.font()).averageCharWidth();
    browser.resize(int(letter * 50), 300);
    browser.show();
    EXPECT_GE(lineWidth(browser),
              browser.viewport()->width() - 2 * browser.document()->documentMargin());
}

}  // namespace

#include "qt/dressing/ReadingColumn.h"

#include <QEvent>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextFrame>
#include <algorithm>

namespace installer {

namespace {

constexpr double longestLine = 76;  // letters

double widthOfLetters(const QTextBrowser& browser) {
    return QFontMetricsF(browser.font()).averageCharWidth() * longestLine;
}

}  // namespace

ReadingColumn::ReadingColumn(QTextBrowser& browser) : QObject(&browser), browser_(browser) {
    browser.viewport()->installEventFilter(this);
    // A new text has a new frame.
    QObject::connect(browser.document(), &QTextDocument::contentsChanged, this,
                     &ReadingColumn::apply);
    apply();
}

bool ReadingColumn::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange) apply();
    return false;
}

void ReadingColumn::apply() {
    QTextDocument& document = *browser_.document();
    const double least = document.documentMargin();
    const double spare = (browser_.viewport()->width() - widthOfLetters(browser_)) / 2;
    const double margin = std::max(least, spare);
    QTextFrameFormat format = document.rootFrame()->frameFormat();
    if (format.leftMargin() == margin && format.rightMargin() == margin) return;
    format.setMargin(least);
    format.setLeftMargin(margin);
    format.setRightMargin(margin);
    document.rootFrame()->setFrameFormat(format);
}

}  // namespace installer

#include "qt/dressing/FitsText.h"

#include <QEvent>
#include <QTextBrowser>
#include <QTextDocument>
#include <algorithm>
#include <cmath>

namespace installer {

namespace {

constexpr int leastHeight = 32;
// Nobody wants to hear more at once.
constexpr int longestSpoken = 1000;

}  // namespace

FitsText::FitsText(QTextBrowser& browser)
    : QObject(&browser), browser_(browser), givenName_(browser.accessibleName()) {
    browser.viewport()->installEventFilter(this);
    QObject::connect(browser.document(), &QTextDocument::contentsChanged, this, [this] {
        apply();
        nameByText();
    });
    apply();
    nameByText();
}

bool FitsText::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Resize) apply();
    return false;
}

void FitsText::apply() {
    const int text = static_cast<int>(std::ceil(browser_.document()->size().height()));
    const int height = std::max(text + 2 * browser_.frameWidth(), leastHeight);
    browser_.setMinimumHeight(leastHeight);
    browser_.setMaximumHeight(height);
}

void FitsText::nameByText() {
    const bool isShort = browser_.document()->characterCount() <= longestSpoken;
    const QString text = isShort ? browser_.toPlainText().simplified() : QString();
    browser_.setAccessibleName(text.isEmpty() ? givenName_ : text);
}

}  // namespace installer

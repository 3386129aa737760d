#include "qt/dressing/FitsText.h"

#include <QEvent>
#include <QTextBrowser>
#include <QTextDocument>
#include <algorithm>
#include <cmath>

namespace installer {

namespace {

constexpr int leastHeight = 32;

}  // namespace

FitsText::FitsText(QTextBrowser& browser) : QObject(&browser), browser_(browser) {
    browser.viewport()->installEventFilter(this);
    QObject::connect(browser.document(), &QTextDocument::contentsChanged, this, &FitsText::apply);
    apply();
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

}  // namespace installer

#include "qt/binding/GuardedText.h"

#include <QKeyEvent>
#include <QTextBrowser>

#include "qt/values/QtText.h"

namespace installer {

namespace {

bool isTyped(const QKeyEvent& key) {
    const bool isCommand =
        (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    return !isCommand && !key.text().isEmpty() && key.text().front().isPrint();
}

}  // namespace

GuardedText::GuardedText(QTextBrowser& browser, InterfaceOwner& owner, QObject& lifetime)
    : QObject(&lifetime), owner_(owner) {
    browser.setReadOnly(true);
    browser.setTabChangesFocus(true);
    browser.installEventFilter(this);
}

bool GuardedText::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        // Holding the key down must not run through several steps.
        if (!key.isAutoRepeat()) static_cast<void>(owner_.shouldChangeText("\n"));
        return true;
    }
    if (isTyped(key)) static_cast<void>(owner_.shouldChangeText(fromQt(key.text())));
    return false;
}

}  // namespace installer

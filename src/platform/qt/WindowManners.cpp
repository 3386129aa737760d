#include "platform/qt/WindowManners.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QVariant>

namespace installer {

namespace {

constexpr const char* staysOpen = "staysOpen";

bool isReturn(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    const bool isPlain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) && isPlain &&
           !key.isAutoRepeat();
}

}  // namespace

WindowManners::WindowManners(QMainWindow& window) : QObject(&window), window_(window) {
    window.installEventFilter(this);
}

void WindowManners::setClosable(QMainWindow& window, bool closable) {
    window.setProperty(staysOpen, !closable);
}

QPushButton* WindowManners::defaultButton(const QMainWindow& window) {
    for (auto* button : window.findChildren<QPushButton*>()) {
        if (button->isDefault() && button->isEnabled() && button->isVisibleTo(&window)) {
            return button;
        }
    }
    return nullptr;
}

bool WindowManners::pressesButton(const QEvent& event) const {
    if (!isReturn(event)) return false;
    auto* button = qobject_cast<QPushButton*>(window_.focusWidget());
    if (!button) button = defaultButton(window_);
    if (!button) return false;
    button->click();
    return true;
}

bool WindowManners::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &window_) return false;
    if (event->type() == QEvent::Close && window_.property(staysOpen).toBool()) {
        event->ignore();
        return true;
    }
    return pressesButton(*event);
}

}  // namespace installer

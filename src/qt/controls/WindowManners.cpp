#include "qt/controls/WindowManners.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QVariant>

#include "qt/dressing/MenuButton.h"

namespace installer {

namespace {

constexpr const char* staysOpen = "staysOpen";

bool isMenuKey(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::NoModifier;
}

bool isReturn(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    const bool isPlain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) && isPlain;
}

/// Holding the key down must not run through several pages.
bool isHeldReturn(const QEvent& event) {
    return isReturn(event) && static_cast<const QKeyEvent&>(event).isAutoRepeat();
}

}  // namespace

WindowManners::WindowManners(QMainWindow& window) : QObject(&window), window_(window) {
    window.installEventFilter(this);
    // A default button presses itself at every repetition of the key.
    for (auto* button : window.findChildren<QPushButton*>()) button->installEventFilter(this);
    // Queued: whatever took the focus away may be about to enable or to show what shall have it.
    QObject::connect(
        qApp, &QApplication::focusChanged, this,
        [this](QWidget* /*old*/, QWidget* now) {
            if (now == nullptr) placeFocus();
        },
        Qt::QueuedConnection);
}

void WindowManners::placeFocus() {
    if (!window_.isActiveWindow() || window_.focusWidget() != nullptr) return;
    if (QPushButton* button = defaultButton(window_)) {
        button->setFocus();
        return;
    }
    for (QWidget* next = window_.nextInFocusChain(); next != &window_;
         next = next->nextInFocusChain()) {
        const bool canHaveFocus = (next->focusPolicy() & Qt::TabFocus) != 0;
        if (canHaveFocus && next->isEnabled() && next->isVisible() && next->window() == &window_) {
            next->setFocus();
            return;
        }
    }
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
    if (isHeldReturn(*event)) return true;
    if (watched != &window_) return false;
    if (event->type() == QEvent::Close && window_.property(staysOpen).toBool()) {
        event->ignore();
        return true;
    }
    if (isMenuKey(*event)) {
        MenuButton* menu = MenuButton::of(window_);
        if (menu) menu->open();
        return menu != nullptr;
    }
    return pressesButton(*event);
}

}  // namespace installer

#include "qt/dialogs/WindowOnTop.h"

#include <QApplication>
#include <QWidget>

namespace installer {

QWidget* windowOnTop() {
    if (QWidget* active = QApplication::activeWindow()) return active;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Window) return window;
    return nullptr;
}

}  // namespace installer

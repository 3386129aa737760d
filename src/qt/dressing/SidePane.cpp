#include "qt/dressing/SidePane.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include "qt/theme/ReadableColor.h"

namespace installer {

SidePane::SidePane(QWidget& pane) : QObject(&pane), pane_(pane) {
    pane.setAutoFillBackground(true);
    // The desktop's change comes down through the parents, and stops at a palette of the pane's
    // own.
    pane.parentWidget()->installEventFilter(this);
    apply();
}

bool SidePane::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::PaletteChange) apply();
    return false;
}

void SidePane::apply() {
    QPalette palette = QApplication::palette();
    const QColor ground = palette.color(QPalette::Base);
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, counterpart(Qt::black, ground));
    pane_.setPalette(palette);
}

}  // namespace installer

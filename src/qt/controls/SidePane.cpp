#include "qt/controls/SidePane.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include "qt/theme/ReadableColor.h"

namespace installer {

SidePane::SidePane(QWidget& pane) : QObject(&pane), pane_(pane) {
    pane.setAutoFillBackground(true);
    pane.installEventFilter(this);
    apply();
}

bool SidePane::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) apply();
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

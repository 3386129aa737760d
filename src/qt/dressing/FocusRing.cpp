#include "qt/dressing/FocusRing.h"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QPainter>

#include "qt/theme/ReadableColor.h"

namespace installer {

namespace {

constexpr int outside = 3;  // how far the ring lies around the control

bool cameByKeys(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

}  // namespace

FocusRing::FocusRing(QMainWindow& window) : QWidget(&window), window_(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    // Pages may come later.
    qApp->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::FocusIn:
            if (watched->isWidgetType()) {
                focusCame(*static_cast<QWidget*>(watched),
                          static_cast<QFocusEvent&>(*event).reason());
            }
            break;
        case QEvent::FocusOut:
        case QEvent::Hide:
            if (watched == control_) surround(nullptr);
            break;
        case QEvent::Move:
        case QEvent::Resize:
            if (watched == control_) place();
            break;
        default:
            break;
    }
    return false;
}

void FocusRing::focusCame(QWidget& control, Qt::FocusReason reason) {
    if (control.window() == &window_) surround(cameByKeys(reason) ? &control : nullptr);
}

void FocusRing::surround(QWidget* control) {
    control_ = control;
    setVisible(control != nullptr);
    if (control) place();
}

void FocusRing::place() {
    const QRect area(control_->mapTo(&window_, QPoint()), control_->size());
    setGeometry(area.adjusted(-outside, -outside, outside, outside));
    raise();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/) {
    const QPalette& palette = window_.palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(
        readableColor(palette.color(QPalette::Highlight), palette.color(QPalette::Window)), 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
}

}  // namespace installer

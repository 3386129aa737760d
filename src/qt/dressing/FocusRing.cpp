#include "qt/dressing/FocusRing.h"

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
    for (auto* control : window.findChildren<QWidget*>()) {
        if (control->focusPolicy() != Qt::NoFocus) control->installEventFilter(this);
    }
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    auto* control = static_cast<QWidget*>(watched);
    switch (event->type()) {
        case QEvent::FocusIn:
            surround(cameByKeys(static_cast<QFocusEvent&>(*event).reason()) ? control : nullptr);
            break;
        case QEvent::FocusOut:
        case QEvent::Hide:
            if (control == control_) surround(nullptr);
            break;
        case QEvent::Move:
        case QEvent::Resize:
            if (control == control_) place();
            break;
        default:
            break;
    }
    return false;
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

#include "qt/dressing/DotLine.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <vector>

#include "qt/theme/ReadableColor.h"

namespace installer {

namespace {

constexpr int aroundDot = 2;
constexpr int thickness = 2;  // an even one has its middle where the dots have theirs

std::vector<QRect> dotsOf(const QWidget& list) {
    std::vector<QRect> dots;
    for (const auto* label : list.findChildren<QLabel*>()) {
        if (label->property(DotLine::dotProperty).toBool() && label->isVisible()) {
            dots.emplace_back(label->mapTo(&list, QPoint()), label->size());
        }
    }
    std::sort(dots.begin(), dots.end(),
              [](const QRect& one, const QRect& other) { return one.top() < other.top(); });
    return dots;
}

}  // namespace

DotLine::DotLine(QWidget& list) : QObject(&list), list_(list) {
    list.installEventFilter(this);
}

bool DotLine::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Paint) draw();
    return false;
}

void DotLine::draw() {
    const std::vector<QRect> dots = dotsOf(list_);
    const QPalette& palette = list_.palette();
    QPainter painter(&list_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(hairlineColor(palette.color(QPalette::WindowText), palette.color(QPalette::Window)),
             thickness));
    for (std::size_t i = 1; i < dots.size(); ++i) {
        const double middle = dots[i].left() + dots[i].width() / 2.0;
        painter.drawLine(QPointF(middle, dots[i - 1].bottom() + aroundDot),
                         QPointF(middle, dots[i].top() - aroundDot));
    }
}

}  // namespace installer

#include "qt/dressing/FollowsFont.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace installer {

FollowsFont::FollowsFont(QWidget& control, TextSize size)
    : QObject(&control), control_(control), size_(size) {
    // The desktop's change comes down through the parents, and stops at a font of a control's own.
    control.parentWidget()->installEventFilter(this);
    apply();
}

bool FollowsFont::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::FontChange) apply();
    return false;
}

void FollowsFont::apply() {
    control_.setFont(fontOfSize(size_, QApplication::font()));
}

}  // namespace installer

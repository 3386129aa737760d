#include "qt/controls/FollowsFont.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace installer {

FollowsFont::FollowsFont(QWidget& control, TextSize size)
    : QObject(&control), control_(control), size_(size) {
    control.installEventFilter(this);
    apply();
}

bool FollowsFont::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) apply();
    return false;
}

void FollowsFont::apply() {
    control_.setFont(fontOfSize(size_, QApplication::font()));
}

}  // namespace installer

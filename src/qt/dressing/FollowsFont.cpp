#include "qt/dressing/FollowsFont.h"

#include <QApplication>
#include <QEvent>
#include <QVariant>
#include <QWidget>

#include "ports/window/DescriptionProperties.h"
#include "qt/theme/TextSizes.h"

namespace installer {

namespace {

TextSize sizeOf(const QWidget& control) {
    const QString size = control.property(textSizeProperty).toString();
    if (size == QLatin1String("heading")) return TextSize::heading;
    if (size == QLatin1String("strong")) return TextSize::strong;
    if (size == QLatin1String("small")) return TextSize::small;
    return TextSize::body;
}

}  // namespace

FollowsFont::FollowsFont(QWidget& control) : QObject(&control), control_(control) {
    // The desktop's change comes down through the parents, and stops at a font of a control's own.
    control.parentWidget()->installEventFilter(this);
    control.installEventFilter(this);
    apply();
}

bool FollowsFont::eventFilter(QObject* watched, QEvent* event) {
    const auto awaited = watched == &control_ ? QEvent::DynamicPropertyChange : QEvent::FontChange;
    if (event->type() == awaited) apply();
    return false;
}

void FollowsFont::apply() {
    control_.setFont(fontOfSize(sizeOf(control_), QApplication::font()));
}

}  // namespace installer

#include "qt/controls/QtView.h"

#include <QLayout>
#include <QPushButton>
#include <cmath>

#include "qt/controls/SubviewLayout.h"

namespace installer {

namespace {

int rounded(double points) {
    return static_cast<int>(std::lround(points));
}

/// A page that goes while one of its controls has the focus would hand it to the next control, such
/// as the button that goes back. The default button gets it, or nothing.
void takeFocusOut(QWidget& page) {
    QWidget* focused = page.window()->focusWidget();
    if (!focused || !page.isAncestorOf(focused)) return;
    focused->clearFocus();
    for (auto* button : page.window()->findChildren<QPushButton*>()) {
        if (button->isDefault() && button->isEnabled() && !page.isAncestorOf(button)) {
            button->setFocus();
        }
    }
}

bool wasHiddenOnPurpose(const QWidget& widget) {
    return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

}  // namespace

void QtView::setHidden(bool hidden) {
    if (!widget_) return;
    if (hidden) takeFocusOut(*widget_);
    widget_->setHidden(hidden);
}

Size QtView::size() const {
    if (!widget_) return {};
    return {static_cast<double>(widget_->width()), static_cast<double>(widget_->height())};
}

void QtView::setFrame(Point origin, Size size) {
    frame_ = {origin, size};
    applyFrame();
}

void QtView::applyFrame() {
    if (!widget_ || !widget_->parentWidget() || !frame_) return;
    QWidget& parent = *widget_->parentWidget();
    auto* layout = dynamic_cast<SubviewLayout*>(parent.layout());
    if (!layout) return;
    const auto& [origin, size] = *frame_;
    const double top = parent.height() - origin.y - size.height;
    layout->setFrame(*widget_, {.area = {rounded(origin.x), rounded(top), rounded(size.width),
                                         rounded(size.height)},
                                .spansWidth = rounded(size.width) == parent.width()});
}

void QtView::addSubview(const std::shared_ptr<View>& child) {
    const auto added = std::dynamic_pointer_cast<QtView>(child);
    if (!widget_ || !added || !added->widget_) return;
    QWidget& view = *added->widget_;
    if (&view == widget_ || view.isAncestorOf(widget_)) return;
    if (!widget_->layout()) new SubviewLayout(*widget_);
    if (widget_->layout()->indexOf(&view) < 0) {
        const bool hidden = wasHiddenOnPurpose(view);
        view.setParent(widget_);
        widget_->layout()->addWidget(&view);
        view.setHidden(hidden);
    }
    added->applyFrame();
}

std::shared_ptr<View> QtView::superview() const {
    if (!widget_ || widget_->isWindow()) return nullptr;
    return std::make_shared<QtView>(widget_->parentWidget());
}

}  // namespace installer

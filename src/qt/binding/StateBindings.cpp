#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>

#include "ports/window/DescriptionProperties.h"
#include "qt/binding/Binding.h"
#include "qt/controls/Announcement.h"
#include "qt/controls/WindowManners.h"
#include "qt/dressing/BehindQuestion.h"
#include "qt/values/Picture.h"
#include "qt/values/QtText.h"
#include "qt/values/RowIcon.h"

namespace installer {

namespace {

bool isSomething(const PropertyValue& value) {
    if (const auto* rows = std::get_if<std::vector<ListRow>>(&value)) return !rows->empty();
    return isTrue(value) || !plainTextOf(value).empty();
}

bool isDefaultButton(const QWidget& widget) {
    const auto* button = qobject_cast<const QPushButton*>(&widget);
    return button != nullptr && button->isDefault();
}

/// The next control that may get the focus without a risk: a key there must not press a button that
/// the user has not chosen. Null if there is none.
QWidget* nextSafeControl(QWidget& from) {
    for (QWidget* next = from.nextInFocusChain(); next != &from; next = next->nextInFocusChain()) {
        const bool takesKeys = (next->focusPolicy() & Qt::TabFocus) != 0 && next->isEnabled() &&
                               next->isVisible() && next->window() == from.window();
        if (takesKeys && !qobject_cast<QPushButton*>(next)) return next;
    }
    return nullptr;
}

/// Enables and disables a control. If it has the focus while it is disabled, the toolkit would give
/// the focus to the next control, and the next key would press that one. So the focus goes to a
/// harmless control, or is cleared. It returns when the control is enabled, unless the user has
/// moved it. If no control has the focus, the default button gets it.
class Enabling {
  public:
    explicit Enabling(QWidget& widget) : widget_(widget) {}

    void operator()(const PropertyValue& value) {
        const bool enabled = isTrue(value);
        if (enabled == widget_.isEnabledTo(widget_.parentWidget())) return;
        if (!enabled && focused() == &widget_) handFocusOn();
        widget_.setEnabled(enabled);
        if (enabled) takeFocusBack();
    }

  private:
    [[nodiscard]] QWidget* focused() const { return widget_.window()->focusWidget(); }

    void handFocusOn() {
        hadFocus_ = true;
        standIn_ = nextSafeControl(widget_);
        widget_.clearFocus();
        if (standIn_) standIn_->setFocus();
    }

    void takeFocusBack() {
        const bool isFree = !focused() || (hadFocus_ && focused() == standIn_);
        if (isFree && (hadFocus_ || isDefaultButton(widget_))) widget_.setFocus();
        hadFocus_ = false;
    }

    QWidget& widget_;
    bool hadFocus_ = false;
    QPointer<QWidget> standIn_;
};

/// Passes the change to the owner, and shows the value that the owner has afterwards.
template <class Control>
ShowValue checking(Control& control, void (Control::*userChanged)(bool),
                   const BindingContext& context) {
    control.setCheckable(true);
    // A value that is shown is not a change by the user.
    const auto show = [&control](const PropertyValue& value) {
        const QSignalBlocker silent(control);
        control.setChecked(isTrue(value));
    };
    QObject::connect(&control, userChanged, &context.lifetime,
                     [show, &control, property = context.property, &owner = context.owner,
                      lifetime = QPointer<QObject>(&context.lifetime)](bool checked) {
                         if (!isBehindQuestion(control)) {
                             owner.setValueForProperty(property, checked);
                         }
                         if (lifetime) show(owner.valueForProperty(property));
                     });
    return show;
}

}  // namespace

bool isTrue(const PropertyValue& value) {
    const auto* flag = std::get_if<bool>(&value);
    return flag && *flag;
}

ShowValue enabledBinding(QObject& control, const BindingContext& /*context*/) {
    if (auto* widget = qobject_cast<QWidget*>(&control)) return Enabling(*widget);
    if (auto* action = qobject_cast<QAction*>(&control)) {
        return [action](const PropertyValue& value) { action->setEnabled(isTrue(value)); };
    }
    return {};
}

ShowValue visibleBinding(QObject& control, const BindingContext& /*context*/) {
    if (auto* widget = qobject_cast<QWidget*>(&control)) {
        return [widget](const PropertyValue& value) { widget->setVisible(isSomething(value)); };
    }
    if (auto* action = qobject_cast<QAction*>(&control)) {
        return [action](const PropertyValue& value) { action->setVisible(isSomething(value)); };
    }
    return {};
}

ShowValue checkedBinding(QObject& control, const BindingContext& context) {
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        return checking(*button, &QAbstractButton::toggled, context);
    }
    if (auto* action = qobject_cast<QAction*>(&control)) {
        return checking(*action, &QAction::toggled, context);
    }
    return {};
}

ShowValue imageBinding(QObject& control, const BindingContext& /*context*/) {
    auto* label = qobject_cast<QLabel*>(&control);
    if (!label) return {};
    return [label](const PropertyValue& value) {
        const auto* image = std::get_if<Image>(&value);
        showPicture(*label, image ? *image : Image{});
        if (!image || !label->pixmap().isNull()) return;
        if (!label->property(placeholderProperty).toBool()) return;
        const int side = label->minimumWidth();
        label->setPixmap(placeholderIcon(side).pixmap(side));
    };
}

ShowValue closableBinding(QObject& control, const BindingContext& /*context*/) {
    auto* window = qobject_cast<QMainWindow*>(&control);
    if (!window) return {};
    return [window](const PropertyValue& value) {
        WindowManners::setClosable(*window, isTrue(value));
    };
}

ShowValue accessibleNameBinding(QObject& control, const BindingContext& /*context*/) {
    auto* widget = qobject_cast<QWidget*>(&control);
    if (!widget) return {};
    return [widget](const PropertyValue& value) {
        const QString name = toQt(plainTextOf(value));
        if (widget->accessibleName() == name) return;
        widget->setAccessibleName(name);
        if (widget->isWindow()) Announcement::make(*widget, name);
    };
}

}  // namespace installer

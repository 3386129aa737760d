#include "qt/binding/Binder.h"

#include <QAbstractButton>
#include <QAction>
#include <QEvent>
#include <QTextBrowser>
#include <QVariant>
#include <array>
#include <cstddef>

#include "ports/window/DescriptionProperties.h"
#include "qt/binding/ControlText.h"
#include "qt/binding/GuardedText.h"
#include "qt/dressing/BehindQuestion.h"

namespace installer {

namespace {

/// In the order of `bindingProperties`.
constexpr std::array<MakeBinding, bindingProperties.size()> makers = {
    textBinding,     plainTextBinding,      styledTextBinding, enabledBinding,
    visibleBinding,  checkedBinding,        imageBinding,      rowsBinding,
    closableBinding, accessibleNameBinding, waitingBinding,    captionBinding};

std::string named(const QObject& control, const char* property) {
    return fromQt(control.property(property).toString());
}

}  // namespace

Binder::Binder(QWidget& root, InterfaceOwner& owner, const Bundle& bundle, SystemLog& log,
               const OpenLink& openLink)
    : owner_(owner), bundle_(bundle), log_(log), openLink_(openLink) {
    bind(root);
    for (QObject* control : root.findChildren<QObject*>()) bind(*control);
    for (const BoundControl& bound : bound_) show(bound);
    announcements_ =
        owner.observeProperties([this](std::string_view property) { showProperty(property); });
}

void Binder::bind(QObject& control) {
    fillIn(control);
    for (std::size_t kind = 0; kind < makers.size(); ++kind) {
        const char* name = bindingProperties[kind];
        if (control.property(name).isValid()) bind(control, name, makers[kind]);
    }
    if (control.property(actionProperty).isValid()) bindAction(control);
    if (control.property(guardsTextProperty).toBool()) {
        auto* browser = qobject_cast<QTextBrowser*>(&control);
        if (browser) {
            new GuardedText(*browser, owner_, *this);
        } else {
            complain(control, guardsTextProperty);
        }
    }
}

void Binder::bind(QObject& control, const char* kind, MakeBinding make) {
    const std::string property = named(control, kind);
    ShowValue show = make(control, {property, owner_, openLink_, *this});
    if (!show) {
        complain(control, kind);
        return;
    }
    auto readAgain = BoundControl::ReadAgain::never;
    if (make == rowsBinding) readAgain = BoundControl::ReadAgain::whenShown;
    if (make == textBinding || make == styledTextBinding) {
        readAgain = BoundControl::ReadAgain::whenColorsChange;
    }
    if (readAgain != BoundControl::ReadAgain::never) control.installEventFilter(this);
    bound_.push_back({&control, property, readAgain, std::move(show)});
}

void Binder::bindAction(QObject& control) {
    const auto perform = [&owner = owner_, action = named(control, actionProperty), &control] {
        if (!isBehindQuestion(control)) owner.performAction(action, &control);
    };
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        connect(button, &QAbstractButton::clicked, this, perform);
    } else if (auto* item = qobject_cast<QAction*>(&control)) {
        connect(item, &QAction::triggered, this, perform);
    } else {
        complain(control, actionProperty);
    }
}

void Binder::fillIn(QObject& control) {
    const auto text = [this, &control](const char* keyProperty) {
        return bundle_.localizedString(named(control, keyProperty), "Localizable").value_or("");
    };
    if (control.property(textKeyProperty).isValid() &&
        !setControlText(control, text(textKeyProperty))) {
        complain(control, textKeyProperty);
    }
    if (control.property(accessibleNameKeyProperty).isValid()) {
        if (auto* widget = qobject_cast<QWidget*>(&control)) {
            widget->setAccessibleName(toQt(text(accessibleNameKeyProperty)));
        } else {
            complain(control, accessibleNameKeyProperty);
        }
    }
}

void Binder::show(const BoundControl& bound) {
    if (bound.control) bound.show(owner_.valueForProperty(bound.property));
}

void Binder::showProperty(std::string_view property) {
    for (const BoundControl& bound : bound_) {
        if (bound.property == property) show(bound);
    }
}

void Binder::complain(const QObject& control, const char* name) {
    log_.log("The window's description gives \"" + fromQt(control.objectName()) +
             "\" the property \"" + name + "\", which does not fit it.");
}

bool Binder::eventFilter(QObject* watched, QEvent* event) {
    auto reason = BoundControl::ReadAgain::never;
    if (event->type() == QEvent::Show) reason = BoundControl::ReadAgain::whenShown;
    if (event->type() == QEvent::PaletteChange) reason = BoundControl::ReadAgain::whenColorsChange;
    if (reason == BoundControl::ReadAgain::never) return false;
    for (const BoundControl& bound : bound_) {
        if (bound.control == watched && bound.readAgain == reason) show(bound);
    }
    return false;
}

}  // namespace installer

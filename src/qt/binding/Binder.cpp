#include "qt/binding/Binder.h"

#include <QAbstractButton>
#include <QAction>
#include <QEvent>
#include <QTextBrowser>
#include <QVariant>

#include "qt/binding/ControlText.h"
#include "qt/binding/GuardedText.h"

namespace installer {

namespace {

struct Kind {
    const char* name;
    MakeBinding make;
};

constexpr Kind kinds[] = {
    {"textBinding", textBinding},
    {"plainTextBinding", plainTextBinding},
    {"styledTextBinding", styledTextBinding},
    {"enabledBinding", enabledBinding},
    {"visibleBinding", visibleBinding},
    {"checkedBinding", checkedBinding},
    {"imageBinding", imageBinding},
    {"waitingBinding", waitingBinding},
    {"rowsBinding", rowsBinding},
    {"closableBinding", closableBinding},
    {"accessibleNameBinding", accessibleNameBinding},
};

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
    for (const Kind& kind : kinds) {
        if (control.property(kind.name).isValid()) bind(control, kind.name, kind.make);
    }
    if (control.property("action").isValid()) bindAction(control);
    if (control.property("guardsText").toBool()) {
        auto* browser = qobject_cast<QTextBrowser*>(&control);
        if (browser) {
            new GuardedText(*browser, owner_, *this);
        } else {
            complain(control, "guardsText");
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
    const auto perform = [&owner = owner_, action = named(control, "action"), &control] {
        owner.performAction(action, &control);
    };
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        connect(button, &QAbstractButton::clicked, this, perform);
    } else if (auto* item = qobject_cast<QAction*>(&control)) {
        connect(item, &QAction::triggered, this, perform);
    } else {
        complain(control, "action");
    }
}

void Binder::fillIn(QObject& control) {
    const auto text = [this, &control](const char* keyProperty) {
        return bundle_.localizedString(named(control, keyProperty), "Localizable").value_or("");
    };
    if (control.property("textKey").isValid() && !setControlText(control, text("textKey"))) {
        complain(control, "textKey");
    }
    if (control.property("accessibleNameKey").isValid()) {
        if (auto* widget = qobject_cast<QWidget*>(&control)) {
            widget->setAccessibleName(toQt(text("accessibleNameKey")));
        } else {
            complain(control, "accessibleNameKey");
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

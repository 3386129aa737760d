#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "ports/window/InterfaceOwner.h"

namespace installer {

using OpenLink = std::function<void(const std::string& address)>;

/// What a binding needs to work on its control.
struct BindingContext {
    std::string property;  ///< the owner's
    InterfaceOwner& owner;
    const OpenLink& openLink;
    QObject& lifetime;  ///< what the user does is passed on as long as this lives
};

/// Shows a value of the property in the control that the binding was made for.
using ShowValue = std::function<void(const PropertyValue&)>;

/// Makes the binding between a control and a property. Empty if this kind of binding does not fit
/// the control.
using MakeBinding = ShowValue (*)(QObject& control, const BindingContext& context);

/// The value as plain text. Empty if it is not a text.
[[nodiscard]] std::string plainTextOf(const PropertyValue& value);
[[nodiscard]] bool isTrue(const PropertyValue& value);

// The kinds of bindings, named as in a description.
[[nodiscard]] ShowValue textBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue plainTextBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue styledTextBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue enabledBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue visibleBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue checkedBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue imageBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue waitingBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue captionBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue rowsBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue closableBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue accessibleNameBinding(QObject& control, const BindingContext& context);

}  // namespace installer

#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "ports/window/InterfaceOwner.h"

namespace installer {

using OpenLink = std::function<void(const std::string& address)>;

/// What a binding needs to act on its control.
struct BindingContext {
    std::string property;  ///< the owner's
    InterfaceOwner& owner;
    const OpenLink& openLink;
    QObject& lifetime;  ///< what the user does is passed on as long as this lives
};

/// Shows a value of the property in the control that the binding was made for.
using ShowValue = std::function<void(const PropertyValue&)>;

/// Makes the binding between a control and a property. Empty when the control has nothing that
/// this kind of binding could act on.
using MakeBinding = ShowValue (*)(QObject& control, const BindingContext& context);

/// The value as text: the characters alone when it is styled, empty when it is no text.
[[nodiscard]] std::string plainTextOf(const PropertyValue& value);
[[nodiscard]] bool isTrue(const PropertyValue& value);

// By the names that they have in a description.
[[nodiscard]] ShowValue textBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue plainTextBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue styledTextBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue enabledBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue visibleBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue checkedBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue imageBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue waitingBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue rowsBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue closableBinding(QObject& control, const BindingContext& context);
[[nodiscard]] ShowValue accessibleNameBinding(QObject& control, const BindingContext& context);

}  // namespace installer

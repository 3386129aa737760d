#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace installer {

// The dynamic properties by which a control of an interface description says what it shows and
// does. The window's binder gives each its meaning; whoever checks a description reads them here.

/// Name a property of the owner, which the control shows.
inline constexpr std::array<const char*, 11> bindingProperties = {
    "textBinding",     "plainTextBinding",      "styledTextBinding", "enabledBinding",
    "visibleBinding",  "checkedBinding",        "imageBinding",      "rowsBinding",
    "closableBinding", "accessibleNameBinding", "waitingBinding"};

/// Names an action of the owner.
inline constexpr const char* actionProperty = "action";
/// A truth value: the owner is asked about what the user types.
inline constexpr const char* guardsTextProperty = "guardsText";
/// Name a text of the table "Localizable".
inline constexpr const char* textKeyProperty = "textKey";
inline constexpr const char* accessibleNameKeyProperty = "accessibleNameKey";
/// A truth value of a list: its rows have check boxes.
inline constexpr const char* checkableProperty = "checkable";

/// Say how a control looks, or what the window does with it on its own.
inline constexpr std::array<const char*, 10> lookProperties = {
    "textSize",  "sidePane",      "connectsDots", "dot",    "pictureName",
    "holdsMenu", "readingColumn", "fitsText",     "prints", "saves"};

[[nodiscard]] constexpr bool isLookProperty(std::string_view name) {
    return std::ranges::find(lookProperties, name) != lookProperties.end();
}

[[nodiscard]] constexpr bool isBindingProperty(std::string_view name) {
    return std::ranges::find(bindingProperties, name) != bindingProperties.end();
}

[[nodiscard]] constexpr bool isTextKeyProperty(std::string_view name) {
    return name == textKeyProperty || name == accessibleNameKeyProperty;
}

[[nodiscard]] constexpr bool isDescriptionProperty(std::string_view name) {
    return isBindingProperty(name) || isTextKeyProperty(name) || name == actionProperty ||
           name == guardsTextProperty || name == checkableProperty || isLookProperty(name);
}

}  // namespace installer

#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace installer {

// The dynamic properties by which a control of an interface description says what it shows and
// does. The window's binder gives each its meaning; whoever checks a description reads them here.

/// Name a property of the owner, which the control shows.
inline constexpr std::array<const char*, 12> bindingProperties = {
    "textBinding",     "plainTextBinding",      "styledTextBinding", "enabledBinding",
    "visibleBinding",  "checkedBinding",        "imageBinding",      "rowsBinding",
    "closableBinding", "accessibleNameBinding", "waitingBinding",    "captionBinding"};

/// Names an action of the owner.
inline constexpr const char* actionProperty = "action";
/// A truth value: the owner is asked about what the user types.
inline constexpr const char* guardsTextProperty = "guardsText";
/// Name a text of the table "Localizable".
inline constexpr const char* textKeyProperty = "textKey";
inline constexpr const char* accessibleNameKeyProperty = "accessibleNameKey";
/// A truth value of a list: its rows have check boxes.
inline constexpr const char* checkableProperty = "checkable";

// How a control looks. The README of the window lists what each of them does.
inline constexpr const char* textSizeProperty = "textSize";
inline constexpr const char* sidePaneProperty = "sidePane";
inline constexpr const char* connectsDotsProperty = "connectsDots";
inline constexpr const char* dotProperty = "dot";
inline constexpr const char* pictureNameProperty = "pictureName";
inline constexpr const char* holdsMenuProperty = "holdsMenu";
inline constexpr const char* readingColumnProperty = "readingColumn";
inline constexpr const char* fitsTextProperty = "fitsText";
inline constexpr const char* printsProperty = "prints";
inline constexpr const char* savesProperty = "saves";
/// A truth value of a label: it shows a placeholder where its picture is missing.
inline constexpr const char* placeholderProperty = "placeholder";

/// Those that bind nothing: all but the bindings.
inline constexpr std::array<const char*, 16> otherDescriptionProperties = {
    actionProperty,    guardsTextProperty,  textKeyProperty,   accessibleNameKeyProperty,
    checkableProperty, textSizeProperty,    sidePaneProperty,  connectsDotsProperty,
    dotProperty,       pictureNameProperty, holdsMenuProperty, readingColumnProperty,
    fitsTextProperty,  printsProperty,      savesProperty,     placeholderProperty};

[[nodiscard]] constexpr bool isBindingProperty(std::string_view name) {
    return std::ranges::find(bindingProperties, name) != bindingProperties.end();
}

[[nodiscard]] constexpr bool isTextKeyProperty(std::string_view name) {
    return name == textKeyProperty || name == accessibleNameKeyProperty;
}

[[nodiscard]] constexpr bool isDescriptionProperty(std::string_view name) {
    return isBindingProperty(name) ||
           std::ranges::find(otherDescriptionProperties, name) != otherDescriptionProperties.end();
}

}  // namespace installer

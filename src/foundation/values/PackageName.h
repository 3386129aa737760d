#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace installer {

/// The suffixes that make a folder a package: something presented to people as one item. The one
/// list of the system. The host selection's folder panel also hides each folder with "Contents".
inline constexpr std::array<std::string_view, 12> packageSuffixes = {
    "app",      "bundle",      "plugin",     "component", "kext", "lrplugin",
    "prefPane", "qlgenerator", "mdimporter", "pkg",       "mpkg", "rtfd"};

/// Whether a folder of that name is a package. Letter case counts, and something must stand
/// before the suffix: ".app" is a hidden folder.
[[nodiscard]] constexpr bool isPackageName(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return false;
    return std::find(packageSuffixes.begin(), packageSuffixes.end(), name.substr(dot + 1)) !=
           packageSuffixes.end();
}

}  // namespace installer

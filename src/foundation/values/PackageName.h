#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace installer {

/// A folder whose name ends in one of these suffixes is a package: people see it as one item. There
/// is no other list of them. The folder panel of the custom install does not ask for a name: it
/// hides each folder that holds an entry "Contents".
inline constexpr std::array<std::string_view, 12> packageSuffixes = {
    "app",      "bundle",      "plugin",     "component", "kext", "lrplugin",
    "prefPane", "qlgenerator", "mdimporter", "pkg",       "mpkg", "rtfd"};

/// Whether a folder with that name is a package. Case-sensitive. The suffix alone is not enough:
/// ".app" is a hidden folder.
[[nodiscard]] constexpr bool isPackageName(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return false;
    return std::find(packageSuffixes.begin(), packageSuffixes.end(), name.substr(dot + 1)) !=
           packageSuffixes.end();
}

}  // namespace installer

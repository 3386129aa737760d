#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/mkinstaller/packing/PackSource.h"
#include "tools/mkinstaller/packing/PackageTree.h"

namespace installer {

/// Writes a name in the form of some kind of file.
using Escape = std::function<std::string(std::string_view text)>;
[[nodiscard]] std::string unescaped(std::string_view text);

/// The text with what is known of the product in place of @NAME@ (the package), @TITLE@, @COMPANY@,
/// @IDENTIFIER@, @VERSION@, @MAINTAINER@, @HOMEPAGE@ and @PROGRAMS@ (their folder).
[[nodiscard]] std::string filled(std::string_view text, const PackSource& source,
                                 const PackagePlaces& places, const Escape& escape);

// The texts of the files that a package adds to the bundle.

/// The command: starts the installer, or with a verb the tool for administrators.
[[nodiscard]] std::string commandText(const PackSource& source, const PackagePlaces& places);
/// The lines for the shell that run before the package goes: what the administrator's tool recorded
/// is removed by it, and the package stays if that fails.
[[nodiscard]] std::string removalLines(const PackSource& source, const PackagePlaces& places);
[[nodiscard]] std::string desktopEntryOf(const PackSource& source, const PackagePlaces& places);
/// polkit's action for the helper at its place, with the product's own question in each language.
[[nodiscard]] std::string polkitActionOf(const PackSource& source, const PackagePlaces& places);
[[nodiscard]] std::string manualOf(const PackSource& source, const PackagePlaces& places);
[[nodiscard]] std::string copyrightOf(const PackSource& source);

}  // namespace installer

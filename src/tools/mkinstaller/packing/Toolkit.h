#pragma once

#include <optional>
#include <string>

namespace installer {

/// Puts this machine's window toolkit into the bundle: its libraries but for the C library, the
/// plug-ins that the window needs, one font for systems without any, and their licences. A sentence
/// for the maker if this machine has no Qt or no font.
[[nodiscard]] std::optional<std::string> addToolkit(const std::string& bundle);

}  // namespace installer

#pragma once

#include <string>

namespace installer {

/// A new random identifier in its standard text form: upper-case hexadecimal digits in groups of
/// 8-4-4-4-12 joined by hyphens.
[[nodiscard]] std::string newUuidText();

}  // namespace installer

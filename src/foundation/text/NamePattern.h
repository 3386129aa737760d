#pragma once

#include <string_view>

namespace installer {

/// Whether the whole name is like the pattern, in which "*" stands for any characters, none too,
/// and "?" for exactly one. Nothing else has a meaning, and letter case counts. No pattern makes it
/// compare more often than the product of both lengths.
[[nodiscard]] bool isLike(std::string_view name, std::string_view pattern);

}  // namespace installer

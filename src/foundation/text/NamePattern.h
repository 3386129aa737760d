#pragma once

#include <string_view>

namespace installer {

/// Whether the whole name matches the pattern: "*" stands for any characters, also none, and "?"
/// for exactly one. No other character is special. Case-sensitive. The number of comparisons is at
/// most the product of both lengths.
[[nodiscard]] bool isLike(std::string_view name, std::string_view pattern);

}  // namespace installer

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

/// The characters of a string table's file.
struct StringsTableText {
    std::u32string characters;
    /// Lines on which something had to be replaced, each once, the first line being 1.
    std::vector<std::size_t> damagedLines;
};

inline constexpr char32_t replacementCharacter = 0xFFFD;

/// Decodes UTF-8, with or without a mark, or UTF-16 with one. Line ends become "\n". What is no
/// character, a NUL too, becomes U+FFFD.
[[nodiscard]] StringsTableText decodeStringsTable(std::string_view bytes);

[[nodiscard]] constexpr bool isLeadingSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
[[nodiscard]] constexpr bool isTrailingSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
[[nodiscard]] constexpr char32_t fromSurrogates(char32_t leading, char32_t trailing) {
    return 0x10000 + ((leading - 0xD800) << 10) + (trailing - 0xDC00);
}

}  // namespace installer

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace installer {

/// One character of a text: a code point, or a single byte that is part of none.
struct Utf8Character {
    std::size_t length = 1;  ///< in bytes
    std::optional<char32_t> codePoint;
};

/// The character at the place, which must lie within the text. Forms that are longer than they
/// need to be, halves of surrogate pairs and what the text's end cuts short are no characters.
[[nodiscard]] Utf8Character utf8CharacterAt(std::string_view text, std::size_t place);

/// Adds the character, which must not be half of a surrogate pair, to the text.
void appendUtf8(std::string& text, char32_t character);

/// Whether the text consists of characters only.
[[nodiscard]] bool isValidUtf8(std::string_view text);

}  // namespace installer

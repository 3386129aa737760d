#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace installer {

/// One character of a text: a code point, or a single byte that is not part of one.
struct Utf8Character {
    std::size_t length = 1;  ///< in bytes
    std::optional<char32_t> codePoint;
};

/// The character at that place, which must be within the text. Overlong forms, surrogates and
/// sequences that the end of the text cuts short are not characters.
[[nodiscard]] Utf8Character utf8CharacterAt(std::string_view text, std::size_t place);

/// Appends the character to the text. It must not be a surrogate.
void appendUtf8(std::string& text, char32_t character);

/// Whether the text consists of characters only.
[[nodiscard]] bool isValidUtf8(std::string_view text);

}  // namespace installer

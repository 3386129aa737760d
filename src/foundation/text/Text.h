#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

// Rules about characters, white space and numbers in UTF-8 text. A character is a Unicode code
// point. File names may hold any byte: each byte that is not UTF-8 counts as one character, and
// these operations leave it unchanged.

/// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// The bytes as text, or nullopt if they are not well-formed UTF-8.
[[nodiscard]] std::optional<std::string> decodedUtf8(std::string_view bytes);

/// The text from character `first` on: `count` characters, or all without `count`. nullopt if the
/// text is too short for that.
[[nodiscard]] std::optional<std::string> characters(std::string_view text, std::size_t first);
[[nodiscard]] std::optional<std::string> characters(std::string_view text, std::size_t first,
                                                    std::size_t count);

/// True if `part` occurs in `text`. Case-sensitive. An empty `part` never occurs.
[[nodiscard]] bool contains(std::string_view text, std::string_view part);

/// `text` with every occurrence of `part` replaced, from left to right. The replacement is not
/// searched again. An empty `part` replaces nothing.
[[nodiscard]] std::string replacingAll(std::string_view text, std::string_view part,
                                       std::string_view replacement);

/// `text` without the Unicode white space (line ends excluded) at both of its ends.
[[nodiscard]] std::string trimmed(std::string_view text);

/// `text` without any Unicode white space; line ends stay.
[[nodiscard]] std::string withoutWhiteSpace(std::string_view text);

/// `text` in lower case, in every script. The result depends neither on the user's language nor on
/// a letter's position in its word.
[[nodiscard]] std::string lowerCased(std::string_view text);

/// The pieces of `text` between the separators: at least one, possibly empty.
[[nodiscard]] std::vector<std::string> split(std::string_view text, char separator);

/// The number at the start of the text: white space, an optional sign, decimal digits. 0 if there
/// are no digits. Numbers are clamped to the 32-bit range.
[[nodiscard]] std::int32_t integerValue(std::string_view text);

/// True if both texts are equal apart from the case of ASCII letters.
[[nodiscard]] bool equalIgnoringCase(std::string_view left, std::string_view right);

}  // namespace installer

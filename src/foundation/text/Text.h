#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

// Rules about characters, white space and numbers in UTF-8 text. "Character" is a Unicode code
// point. Bytes that are not UTF-8 (file names may hold any byte) count as one character each and
// survive a round trip through these operations unchanged.

/// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// The bytes as text, or none when they are not well-formed UTF-8.
[[nodiscard]] std::optional<std::string> decodedUtf8(std::string_view bytes);

/// The text from character `first` on, at most `count` characters; none when `first + count`
/// lies beyond the end. Without `count`, everything from `first` on; none when `first` lies
/// beyond the end.
[[nodiscard]] std::optional<std::string> characters(std::string_view text, std::size_t first);
[[nodiscard]] std::optional<std::string> characters(std::string_view text, std::size_t first,
                                                    std::size_t count);

/// True when `part` occurs in `text`; letter case counts. An empty `part` occurs nowhere.
[[nodiscard]] bool contains(std::string_view text, std::string_view part);

/// `text` with every occurrence of `part` replaced, found from left to right and not looked for
/// again in what was put in. An empty `part` replaces nothing.
[[nodiscard]] std::string replacingAll(std::string_view text, std::string_view part,
                                       std::string_view replacement);

/// `text` without the Unicode white space (line ends excluded) at both of its ends.
[[nodiscard]] std::string trimmed(std::string_view text);

/// `text` without any Unicode white space, wherever it stands; line ends stay.
[[nodiscard]] std::string withoutWhiteSpace(std::string_view text);

/// `text` with small letters in place of capital ones, in every script and whatever the user's
/// language. A letter's place in its word does not count.
[[nodiscard]] std::string lowerCased(std::string_view text);

/// The pieces of `text` between the separators: at least one, possibly empty.
[[nodiscard]] std::vector<std::string> split(std::string_view text, char separator);

/// The number a text begins with: leading white space, an optional sign, decimal digits. 0 when
/// there are no digits; numbers that do not fit are clamped to the 32-bit range.
[[nodiscard]] std::int32_t integerValue(std::string_view text);

/// True when both texts are the same but for the case of their ASCII letters.
[[nodiscard]] bool equalIgnoringCase(std::string_view left, std::string_view right);

}  // namespace installer

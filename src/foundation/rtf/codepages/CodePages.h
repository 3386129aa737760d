#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace installer::rtf {

// How bytes become characters. Code pages have their usual numbers. There are tables for 437, 850,
// 852, 866, 874, 932, 1250 to 1258, 10000 and 65001 (UTF-8). 936, 949, 950 and 1361 have none: only
// the length of each character is known, and each becomes one U+FFFD.

constexpr int westernCodePage = 1252;

/// Not a code page: the number of symbol fonts. Only the bullets that editors use for lists are
/// read as text.
constexpr int symbolCodePage = 42;

constexpr char32_t replacementCharacter = 0xFFFD;

[[nodiscard]] bool isKnownCodePage(int codePage);

/// The code page of a font's character set; nullopt for the document's own and for unknown sets.
[[nodiscard]] std::optional<int> codePageOfCharacterSet(int characterSet);

/// The number of bytes of a character that begins with this byte.
[[nodiscard]] std::size_t sequenceLength(int codePage, unsigned char firstByte);

/// Whether the byte can follow the first byte of a character.
[[nodiscard]] bool canContinueSequence(int codePage, unsigned char byte);

/// The character of a whole byte sequence; U+FFFD if there is none.
[[nodiscard]] char32_t decodedSequence(int codePage, std::string_view bytes);

}  // namespace installer::rtf

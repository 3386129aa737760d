#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace installer::rtf {

// How bytes become characters. Code pages go by their usual numbers. Those with a table are 437,
// 850, 852, 866, 874, 932, 1250 to 1258, 10000 and 65001 (UTF-8). 936, 949, 950 and 1361 are known
// only by the shape of their characters: each of two bytes gives one U+FFFD.

constexpr int westernCodePage = 1252;

/// Not a code page but the fonts whose characters are signs: only the marks that editors use for
/// lists have a meaning as text.
constexpr int symbolCodePage = 42;

constexpr char32_t replacementCharacter = 0xFFFD;

[[nodiscard]] bool isKnownCodePage(int codePage);

/// The code page of a font's character set; none for the document's own and for unknown ones.
[[nodiscard]] std::optional<int> codePageOfCharacterSet(int characterSet);

/// How many bytes a character has that begins with this one.
[[nodiscard]] std::size_t sequenceLength(int codePage, unsigned char firstByte);

/// Whether the byte can stand in a character after its first one.
[[nodiscard]] bool canContinueSequence(int codePage, unsigned char byte);

/// The character that the bytes of a whole sequence stand for; U+FFFD when there is none.
[[nodiscard]] char32_t decodedSequence(int codePage, std::string_view bytes);

}  // namespace installer::rtf

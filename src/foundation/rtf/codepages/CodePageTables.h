#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace installer::rtf {

// Data of the code pages. What has no character is given as U+FFFD.

/// The characters of the bytes 80 to FF; none when the code page has no single-byte table.
[[nodiscard]] std::optional<std::u16string_view> upperHalfOfCodePage(int codePage);

/// The character in a row and cell of code page 932's double-byte characters, both counted from 0;
/// none when there is nothing.
[[nodiscard]] std::optional<char16_t> japaneseCharacter(std::size_t row, std::size_t cell);

}  // namespace installer::rtf

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace installer::rtf {

// Data of the code pages. A byte that stands for no character is U+FFFD.

/// The characters of the bytes 80 to FF; nullopt if the code page has no single-byte table.
[[nodiscard]] std::optional<std::u16string_view> upperHalfOfCodePage(int codePage);

/// The double-byte character of code page 932 in that row and cell, both counted from 0; nullopt if
/// there is none.
[[nodiscard]] std::optional<char16_t> japaneseCharacter(std::size_t row, std::size_t cell);

}  // namespace installer::rtf

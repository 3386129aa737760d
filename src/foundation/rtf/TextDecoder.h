#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "foundation/rtf/codepages/CodePages.h"

namespace installer::rtf {

/// Puts characters together from the pieces in which RTF holds them: bytes of a code page, and
/// 16-bit units of which two can make one character. What stays incomplete gives U+FFFD.
class TextDecoder {
  public:
    /// `receive` is called with each character as soon as it is complete.
    explicit TextDecoder(std::function<void(char32_t)> receive) : receive_(std::move(receive)) {}

    void byte(unsigned char byte, int codePage);
    void character(char32_t character);
    /// The number of a Unicode escape: it is negative for units from 8000 on where the editor
    /// thinks in signed numbers, and above FFFF where it writes whole code points.
    void codeUnit(std::int32_t number, int codePage);
    /// What was begun has ended.
    void finish();

    [[nodiscard]] bool awaitsByte() const { return !bytes_.empty(); }

  private:
    std::function<void(char32_t)> receive_;
    std::string bytes_;
    int codePageOfBytes_ = westernCodePage;
    std::optional<char32_t> highSurrogate_;
};

}  // namespace installer::rtf

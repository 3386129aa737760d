#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "foundation/rtf/codepages/CodePages.h"

namespace installer::rtf {

/// Assembles characters from the pieces that RTF has: bytes of a code page, and 16-bit units, two
/// of which can make one character. An incomplete character becomes U+FFFD.
class TextDecoder {
  public:
    /// Calls `receive` with each character as soon as it is complete.
    explicit TextDecoder(std::function<void(char32_t)> receive) : receive_(std::move(receive)) {}

    void byte(unsigned char byte, int codePage);
    void character(char32_t character);
    /// The number of a Unicode escape. Some editors write signed numbers: units from 8000
    /// (hexadecimal) on are then negative. Others write whole code points, which may be above FFFF.
    void codeUnit(std::int32_t number, int codePage);
    /// Ends an incomplete character.
    void finish();

    [[nodiscard]] bool awaitsByte() const { return !bytes_.empty(); }

  private:
    std::function<void(char32_t)> receive_;
    std::string bytes_;
    int codePageOfBytes_ = westernCodePage;
    std::optional<char32_t> highSurrogate_;
};

}  // namespace installer::rtf

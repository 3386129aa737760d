#pragma once

#include <cstddef>
#include <string_view>

namespace installer {

/// How much of one text a window shows. A text view lays out every paragraph and every run of one
/// style, and keeps all of them; so the longest texts would hold up the window for seconds and
/// fill the memory. Few licences have a fifth of this.
struct ShownLength {
    static constexpr std::size_t mostBytes = std::size_t{512} << 10U;
    static constexpr std::size_t mostPieces = 16'384;  ///< paragraphs and runs together
};

/// Counts what a window would show, and says where it becomes too much.
class ShownLengthCount {
  public:
    /// Whether `bytes` and `pieces` more are still shown; if so they are counted. Once something
    /// was too much, everything is.
    [[nodiscard]] bool takes(std::size_t bytes, std::size_t pieces);

    [[nodiscard]] bool isExceeded() const { return isExceeded_; }

  private:
    std::size_t bytes_ = 0;
    std::size_t pieces_ = 0;
    bool isExceeded_ = false;
};

/// The part of a plain text in UTF-8 that a window shows: all of it, or its beginning, which ends
/// behind a whole character.
[[nodiscard]] std::string_view shownPart(std::string_view text);

}  // namespace installer

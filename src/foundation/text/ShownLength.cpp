#include "foundation/text/ShownLength.h"

#include <algorithm>

namespace installer {

namespace {

// Each line is a paragraph with one run.
constexpr std::size_t mostLines = ShownLength::mostPieces / 2;

std::string_view upToAWholeCharacter(std::string_view text, std::size_t length) {
    const auto continues = [text](std::size_t place) {
        return (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U;
    };
    if (length >= text.size()) return text;
    while (length > 0 && continues(length)) --length;
    return text.substr(0, length);
}

}  // namespace

bool ShownLengthCount::takes(std::size_t bytes, std::size_t pieces) {
    isExceeded_ = isExceeded_ || bytes > ShownLength::mostBytes - bytes_ ||
                  pieces > ShownLength::mostPieces - pieces_;
    if (isExceeded_) return false;
    bytes_ += bytes;
    pieces_ += pieces;
    return true;
}

std::string_view shownPart(std::string_view text) {
    const std::string_view part = upToAWholeCharacter(text, ShownLength::mostBytes);
    std::size_t end = 0;
    for (std::size_t line = 0; line < mostLines; ++line) {
        const std::size_t lineFeed = part.find('\n', end);
        if (lineFeed == std::string_view::npos) return part;
        end = lineFeed + 1;
    }
    return part.substr(0, end);
}

}  // namespace installer

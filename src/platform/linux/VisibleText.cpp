#include "platform/linux/VisibleText.h"

#include <cstddef>
#include <cstdint>

namespace installer {

namespace {

struct Character {
    char32_t code = 0;
    std::size_t length = 0;  ///< 0: the bytes are not UTF-8
};

std::uint8_t byteAt(std::string_view text, std::size_t place) {
    return static_cast<std::uint8_t>(text[place]);
}

Character characterAt(std::string_view text, std::size_t place) {
    const std::uint8_t first = byteAt(text, place);
    if (first < 0x80) return {first, 1};
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length == 0 || first > 0xF4 || text.size() - place < length) return {};
    auto code = static_cast<char32_t>(first & (0x7Fu >> length));
    for (std::size_t index = 1; index < length; ++index) {
        const std::uint8_t next = byteAt(text, place + index);
        if ((next & 0xC0) != 0x80) return {};
        code = (code << 6) | (next & 0x3Fu);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (overlong || surrogate || code > 0x10FFFF) return {};
    return {code, length};
}

bool disturbsALine(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) ||  //
           code == 0x2028 || code == 0x2029 ||               // line and paragraph separator
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

void appendVisible(std::string& line, std::uint8_t byte) {
    constexpr char digits[] = "0123456789abcdef";
    switch (byte) {
        case '\n':
            line += "\\n";
            return;
        case '\r':
            line += "\\r";
            return;
        case '\t':
            line += "\\t";
            return;
        default:
            break;
    }
    line += "\\x";
    line += digits[byte >> 4];
    line += digits[byte & 0x0F];
}

}  // namespace

std::string visibleText(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t place = 0; place < text.size();) {
        const Character character = characterAt(text, place);
        const std::size_t length = character.length == 0 ? 1 : character.length;
        if (character.length != 0 && !disturbsALine(character.code)) {
            line += text.substr(place, length);
        } else {
            for (std::size_t index = 0; index < length; ++index)
                appendVisible(line, byteAt(text, place + index));
        }
        place += length;
    }
    return line;
}

}  // namespace installer

#include "foundation/values/VisibleText.h"

#include <cstddef>
#include <cstdint>

#include "foundation/values/Utf8.h"

namespace installer {

namespace {

std::uint8_t octetAt(std::string_view text, std::size_t place) {
    return static_cast<std::uint8_t>(text[place]);
}

bool disturbsALine(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) ||       //
           code == 0x2028 || code == 0x2029 ||                    // line and paragraph separator
           code == 0x061C || code == 0x200E || code == 0x200F ||  // marks of a direction
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
        const Utf8Character character = utf8CharacterAt(text, place);
        if (character.codePoint && !disturbsALine(*character.codePoint)) {
            line += text.substr(place, character.length);
        } else {
            for (std::size_t index = 0; index < character.length; ++index)
                appendVisible(line, octetAt(text, place + index));
        }
        place += character.length;
    }
    return line;
}

}  // namespace installer

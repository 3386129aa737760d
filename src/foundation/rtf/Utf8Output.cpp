#include "foundation/rtf/Utf8Output.h"

namespace installer::rtf {

namespace {

char continuation(char32_t bits) {
    return static_cast<char>(0x80U | (bits & 0x3FU));
}

}  // namespace

void appendUtf8(char32_t character, std::string& text) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | (character >> 6U));
        text += continuation(character);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0U | (character >> 12U));
        text += continuation(character >> 6U);
        text += continuation(character);
    } else {
        text += static_cast<char>(0xF0U | (character >> 18U));
        text += continuation(character >> 12U);
        text += continuation(character >> 6U);
        text += continuation(character);
    }
}

}  // namespace installer::rtf

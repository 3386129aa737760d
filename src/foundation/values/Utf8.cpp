#include "foundation/values/Utf8.h"

namespace installer {

namespace {

unsigned byteAt(std::string_view text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

/// How many bytes a sequence with this first byte has; 0 when no sequence begins with it.
std::size_t sequenceLength(unsigned firstByte) {
    if (firstByte < 0x80) return 1;
    if (firstByte >= 0xC2 && firstByte <= 0xDF) return 2;
    if (firstByte >= 0xE0 && firstByte <= 0xEF) return 3;
    if (firstByte >= 0xF0 && firstByte <= 0xF4) return 4;
    return 0;
}

/// Refuses what is not a character in spite of its well-formed bytes: a code point in more bytes
/// than it needs, half of a surrogate pair, or one beyond the last.
bool isCodePointOfLength(char32_t codePoint, std::size_t length) {
    if (length == 3) return codePoint >= 0x800 && (codePoint < 0xD800 || codePoint > 0xDFFF);
    if (length == 4) return codePoint >= 0x10000 && codePoint <= 0x10FFFF;
    return true;
}

}  // namespace

Utf8Character utf8CharacterAt(std::string_view text, std::size_t place) {
    const unsigned first = byteAt(text, place);
    const std::size_t length = sequenceLength(first);
    if (length == 0 || length > text.size() - place) return {};
    if (length == 1) return {1, first};
    char32_t codePoint = first & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        const unsigned byte = byteAt(text, place + index);
        if ((byte & 0xC0U) != 0x80U) return {};
        codePoint = (codePoint << 6U) | (byte & 0x3FU);
    }
    if (!isCodePointOfLength(codePoint, length)) return {};
    return {length, codePoint};
}

void appendUtf8(std::string& text, char32_t character) {
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | (character >> 6U));
        continuation(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0U | (character >> 12U));
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0U | (character >> 18U));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        if (!character.codePoint) return false;
        place += character.length;
    }
    return true;
}

}  // namespace installer

#include "foundation/rtf/TextDecoder.h"

#include <string_view>

namespace installer::rtf {

namespace {

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Editors write the characters of their sign fonts as F000 plus the byte.
std::optional<unsigned char> signByte(char32_t unit) {
    if (unit < 0xF020 || unit > 0xF0FF) return std::nullopt;
    return static_cast<unsigned char>(unit - 0xF000);
}

}  // namespace

void TextDecoder::byte(unsigned char byte, int codePage) {
    const bool continues =
        !bytes_.empty() && codePageOfBytes_ == codePage && canContinueSequence(codePage, byte);
    if (!continues) {
        finish();
        codePageOfBytes_ = codePage;
    }
    bytes_.push_back(static_cast<char>(byte));
    if (bytes_.size() < sequenceLength(codePage, static_cast<unsigned char>(bytes_.front()))) {
        return;
    }
    const char32_t decoded = decodedSequence(codePage, bytes_);
    bytes_.clear();
    receive_(decoded);
}

void TextDecoder::character(char32_t character) {
    finish();
    receive_(character);
}

void TextDecoder::codeUnit(std::int32_t number, int codePage) {
    const std::int32_t unit = number < 0 ? number + 0x10000 : number;
    const auto value = static_cast<char32_t>(unit);
    if (highSurrogate_ && isLowSurrogate(value)) {
        const char32_t high = *highSurrogate_;
        highSurrogate_.reset();
        receive_(0x10000 + ((high - 0xD800) << 10U) + (value - 0xDC00));
        return;
    }
    finish();
    const auto sign = codePage == symbolCodePage ? signByte(value) : std::nullopt;
    if (isHighSurrogate(value)) {
        highSurrogate_ = value;
    } else if (unit < 0 || unit > 0x10FFFF || isLowSurrogate(value)) {
        receive_(replacementCharacter);
    } else if (sign) {
        byte(*sign, codePage);
    } else {
        receive_(value);
    }
}

void TextDecoder::finish() {
    const bool isIncomplete = !bytes_.empty() || highSurrogate_.has_value();
    bytes_.clear();
    highSurrogate_.reset();
    if (isIncomplete) receive_(replacementCharacter);
}

}  // namespace installer::rtf

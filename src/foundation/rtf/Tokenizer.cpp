#include "foundation/rtf/Tokenizer.h"

#include <algorithm>
#include <limits>

namespace installer::rtf {

namespace {

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::optional<unsigned> hexValue(char digit) {
    if (isDigit(digit)) return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    return std::nullopt;
}

}  // namespace

Token Tokenizer::next() {
    if (place_ == rtf_.size()) return {};
    switch (rtf_[place_]) {
        case '{':
            ++place_;
            return {.kind = Token::Kind::groupStart};
        case '}':
            ++place_;
            return {.kind = Token::Kind::groupEnd};
        case '\\':
            ++place_;
            return controlToken();
        default:
            return textToken();
    }
}

Token Tokenizer::textToken() {
    const std::size_t end = std::min(rtf_.find_first_of("{}\\", place_), rtf_.size());
    const Token token{.kind = Token::Kind::text, .text = rtf_.substr(place_, end - place_)};
    place_ = end;
    return token;
}

Token Tokenizer::controlToken() {
    if (place_ == rtf_.size()) return {};
    if (isLetter(rtf_[place_])) return controlWordToken();
    if (rtf_[place_] == '\'') return hexToken();
    return {.kind = Token::Kind::controlSymbol, .text = rtf_.substr(place_++, 1)};
}

Token Tokenizer::controlWordToken() {
    const std::size_t begin = place_;
    while (place_ < rtf_.size() && isLetter(rtf_[place_])) ++place_;
    Token token{.kind = Token::Kind::controlWord, .text = rtf_.substr(begin, place_ - begin)};
    token.number = parameter();
    if (place_ < rtf_.size() && rtf_[place_] == ' ') ++place_;
    if (token.text == "bin") {
        const auto length = static_cast<std::size_t>(std::max(token.number.value_or(0), 0));
        place_ += std::min(length, rtf_.size() - place_);
    }
    return token;
}

std::optional<std::int32_t> Tokenizer::parameter() {
    const std::string_view rest = rtf_.substr(place_);
    const bool isNegative = rest.starts_with('-');
    std::size_t digit = isNegative ? 1 : 0;
    if (digit >= rest.size() || !isDigit(rest[digit])) return std::nullopt;
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
    std::int64_t number = 0;
    for (; digit < rest.size() && isDigit(rest[digit]); ++digit) {
        number = std::min(number * 10 + (rest[digit] - '0'), largest);
    }
    place_ += digit;
    return static_cast<std::int32_t>(isNegative ? -number : number);
}

Token Tokenizer::hexToken() {
    ++place_;
    const auto high = place_ < rtf_.size() ? hexValue(rtf_[place_]) : std::nullopt;
    const auto low = place_ + 1 < rtf_.size() ? hexValue(rtf_[place_ + 1]) : std::nullopt;
    if (!high || !low) return {.kind = Token::Kind::controlSymbol, .text = "'"};
    place_ += 2;
    return {.kind = Token::Kind::hexByte, .byte = static_cast<unsigned char>(*high * 16 + *low)};
}

}  // namespace installer::rtf

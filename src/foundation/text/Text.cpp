#include "foundation/text/Text.h"

#include <algorithm>
#include <limits>

#include "foundation/values/Utf8.h"

namespace installer {

namespace {

constexpr std::size_t longestSequence = 4;

/// The byte offset after the first `count` characters; nullopt if there are fewer.
std::optional<std::size_t> placeAfter(std::string_view text, std::size_t count) {
    std::size_t place = 0;
    for (; count > 0; --count) {
        if (place == text.size()) return std::nullopt;
        place += utf8CharacterAt(text, place).length;
    }
    return place;
}

/// False when the place lies inside a character.
bool isBoundary(std::string_view text, std::size_t place) {
    for (std::size_t back = 1; back < longestSequence && back <= place; ++back) {
        if (utf8CharacterAt(text, place - back).length > back) return false;
    }
    return true;
}

/// The first offset from `from` on where `part` occurs as whole characters, else npos. Only a
/// `part` that is not UTF-8 can occur inside a character.
std::size_t placeOf(std::string_view text, std::string_view part, std::size_t from) {
    if (part.empty()) return std::string_view::npos;
    std::size_t place = text.find(part, from);
    while (place != std::string_view::npos &&
           !(isBoundary(text, place) && isBoundary(text, place + part.size()))) {
        place = text.find(part, place + 1);
    }
    return place;
}

/// The tab and Unicode's space separators.
bool isWhiteSpace(Utf8Character character) {
    if (!character.codePoint) return false;
    const char32_t point = *character.codePoint;
    return point == 0x09 || point == 0x20 || point == 0xA0 || point == 0x1680 ||
           (point >= 0x2000 && point <= 0x200A) || point == 0x202F || point == 0x205F ||
           point == 0x3000;
}

bool isLineEnd(Utf8Character character) {
    if (!character.codePoint) return false;
    const char32_t point = *character.codePoint;
    return (point >= 0x0A && point <= 0x0D) || point == 0x85 || point == 0x2028 || point == 0x2029;
}

char lowerCaseAscii(char character) {
    const bool isUpperCase = character >= 'A' && character <= 'Z';
    return isUpperCase ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    for (std::size_t place = 0; place < bytes.size();) {
        const Utf8Character character = utf8CharacterAt(bytes, place);
        if (!character.codePoint) return false;
        place += character.length;
    }
    return true;
}

std::optional<std::string> decodedUtf8(std::string_view bytes) {
    if (!isUtf8(bytes)) return std::nullopt;
    return std::string(bytes);
}

std::optional<std::string> characters(std::string_view text, std::size_t first) {
    const auto begin = placeAfter(text, first);
    if (!begin) return std::nullopt;
    return std::string(text.substr(*begin));
}

std::optional<std::string> characters(std::string_view text, std::size_t first, std::size_t count) {
    const auto begin = placeAfter(text, first);
    if (!begin) return std::nullopt;
    const auto length = placeAfter(text.substr(*begin), count);
    if (!length) return std::nullopt;
    return std::string(text.substr(*begin, *length));
}

bool contains(std::string_view text, std::string_view part) {
    return placeOf(text, part, 0) != std::string_view::npos;
}

std::string replacingAll(std::string_view text, std::string_view part,
                         std::string_view replacement) {
    std::string result;
    std::size_t done = 0;
    for (std::size_t place = placeOf(text, part, 0); place != std::string_view::npos;
         place = placeOf(text, part, done)) {
        result += text.substr(done, place - done);
        result += replacement;
        done = place + part.size();
    }
    result += text.substr(done);
    return result;
}

std::string trimmed(std::string_view text) {
    std::size_t begin = text.size();
    std::size_t end = text.size();
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        if (!isWhiteSpace(character)) {
            begin = std::min(begin, place);
            end = place + character.length;
        }
        place += character.length;
    }
    return std::string(text.substr(begin, end - begin));
}

std::string withoutWhiteSpace(std::string_view text) {
    std::string result;
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        if (!isWhiteSpace(character)) result += text.substr(place, character.length);
        place += character.length;
    }
    return result;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator, begin)) {
        pieces.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    pieces.emplace_back(text.substr(begin));
    return pieces;
}

std::int32_t integerValue(std::string_view text) {
    using Limits = std::numeric_limits<std::int32_t>;
    std::size_t place = 0;
    while (place < text.size()) {
        const Utf8Character character = utf8CharacterAt(text, place);
        if (!isWhiteSpace(character) && !isLineEnd(character)) break;
        place += character.length;
    }
    const bool isNegative = text.substr(place).starts_with('-');
    if (isNegative || text.substr(place).starts_with('+')) ++place;
    std::int64_t number = 0;
    for (; place < text.size() && text[place] >= '0' && text[place] <= '9'; ++place) {
        // One more than the greatest number is enough to tell that it does not fit.
        number = std::min<std::int64_t>(number * 10 + (text[place] - '0'),
                                        std::int64_t{Limits::max()} + 1);
    }
    if (isNegative) number = -number;
    return static_cast<std::int32_t>(std::min<std::int64_t>(number, Limits::max()));
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, lowerCaseAscii, lowerCaseAscii);
}

}  // namespace installer

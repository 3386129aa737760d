#include "foundation/text/Format.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace installer {

namespace {

using Arguments = std::initializer_list<std::string_view>;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// What was read after a percent sign: its length, and the number of the argument (from 0), or
/// nullopt for the next one.
struct Placeholder {
    std::size_t length = 0;
    std::optional<std::size_t> position;
};

/// The placeholder at the start of the text after a percent sign, if there is one. A number that no
/// argument can have, such as 0 or one with thirty digits, is a placeholder too.
std::optional<Placeholder> parsePlaceholder(std::string_view text, std::size_t argumentCount) {
    if (text.starts_with('@')) return Placeholder{1, std::nullopt};
    std::size_t length = 0;
    std::size_t number = 0;
    while (length < text.size() && isDigit(text[length])) {
        const auto digit = static_cast<std::size_t>(text[length] - '0');
        number = std::min(number * 10 + digit, argumentCount + 1);
        ++length;
    }
    if (length == 0 || !text.substr(length).starts_with("$@")) return std::nullopt;
    return Placeholder{length + 2, number == 0 ? argumentCount : number - 1};
}

}  // namespace

std::string formatted(std::string_view format, Arguments arguments) {
    std::string result;
    std::size_t next = 0;
    std::size_t place = 0;
    while (place < format.size()) {
        const char character = format[place++];
        const std::string_view rest = format.substr(place);
        if (character != '%') {
            result += character;
        } else if (rest.starts_with('%')) {
            result += '%';
            ++place;
        } else if (const auto placeholder = parsePlaceholder(rest, arguments.size())) {
            const std::size_t position = placeholder->position ? *placeholder->position : next++;
            if (position < arguments.size()) result += arguments.begin()[position];
            place += placeholder->length;
        } else {
            result += '%';
        }
    }
    return result;
}

}  // namespace installer

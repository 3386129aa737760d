// Rules about texts from other hands: formats of the plug-in maker, version numbers, names and
// paths of any bytes, what is shown of them. Input: a text, another one, a third.

#include <algorithm>
#include <charconv>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/VisibleText.h"
#include "install/engine/DecimalNumber.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using namespace installer;
using fuzz::require;

void checkFormat(const std::string& format, const std::string& first, const std::string& second) {
    const std::string result = formatted(format, {first, second});
    const auto places = static_cast<std::size_t>(std::ranges::count(format, '@'));
    require(result.size() <= format.size() + places * std::max(first.size(), second.size()));
    if (isUtf8(format) && isUtf8(first) && isUtf8(second)) require(isUtf8(result));
    std::string doubled;
    for (const char character : format) doubled += std::string(character == '%' ? 2 : 1, character);
    require(formatted(doubled, {first, second}) == format);
    // What is put in is no format.
    require(formatted("%@%%%@", {format, first}) == format + "%" + first);
    require(formatted("%2$@%3$@%1$@", {format, first}) == first + format);
}

void checkVisible(const std::string& text) {
    const std::string visible = visibleText(text);
    require(isUtf8(visible) && !fuzz::hasControl(visible));
    require(visibleText(visible) == visible);
}

void checkPieces(const std::string& text, const std::string& part) {
    std::string joined;
    for (const std::string& piece : split(text, '/')) joined += piece + "/";
    require(joined == text + "/");
    require(replacingAll(text, part, part) == text);
    require(contains(text, part) == (replacingAll(text, part, part + "+") != text));
    require(characters(text, 0) == text);
    if (!text.empty()) {
        require(characters(text, 0, 1).value() + characters(text, 1).value() == text);
    }
    require(!characters(text, text.size() + 1));
    const std::string inner = trimmed(text);
    require(text.find(inner) != std::string::npos && trimmed(inner) == inner);
    require(withoutWhiteSpace(inner) == withoutWhiteSpace(text));
    // The broken halves of a character that a space has kept apart can make one without it.
    require(!isUtf8(text) || trimmed(withoutWhiteSpace(text)) == withoutWhiteSpace(text));
    require(lowerCased(lowerCased(text)) == lowerCased(text));
    require(isUtf8(lowerCased(text)) == isUtf8(text));
}

void checkPaths(const std::string& path) {
    const std::string single = withSingleSeparators(path);
    require(single.find("//") == std::string::npos && withSingleSeparators(single) == single);
    require(joinPath(parentPath(path), lastPathComponent(path)) == single);
}

std::strong_ordering reversed(std::strong_ordering order) {
    return 0 <=> order;
}

void checkNumbers(const std::string& left, const std::string& right) {
    const DecimalNumber number = DecimalNumber::parsed(left);
    const DecimalNumber other = DecimalNumber::parsed(right);
    require(DecimalNumber::parsed(number.paddedTo(12)) == number);
    require(number.paddedTo(12).size() >= 12);
    require((number <=> other) == reversed(other <=> number));
    require((number == other) == ((number <=> other) == 0));
    const auto small = [](const DecimalNumber& value) {
        const std::string digits = value.paddedTo(0);
        std::int64_t parsed = 0;
        const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), parsed);
        require(end.ptr == digits.data() + digits.size());
        return end.ec == std::errc() ? std::optional(parsed) : std::nullopt;
    };
    const auto first = small(number);
    const auto second = small(other);
    if (first && second) require((*first <=> *second) == (number <=> other));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> texts = fuzz::parts(fuzz::textOf(data, size), 3);
    checkFormat(texts[0], texts[1], texts[2]);
    checkVisible(texts[0]);
    checkPieces(texts[0], texts[1]);
    checkPaths(texts[0]);
    checkNumbers(texts[0], texts[1]);
    return 0;
}

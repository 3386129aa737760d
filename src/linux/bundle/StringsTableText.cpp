#include "linux/bundle/StringsTableText.h"

#include <cstdint>
#include <optional>

namespace installer {

namespace {

std::uint8_t byteAt(std::string_view bytes, std::size_t place) {
    return static_cast<std::uint8_t>(bytes[place]);
}

/// Collects characters, counts lines and notes the damaged ones.
class Collector {
  public:
    explicit Collector(std::size_t expected) { text_.characters.reserve(expected); }

    void add(char32_t character) {
        const bool endsPair = character == U'\n' && previous_ == U'\r';
        previous_ = character;
        if (endsPair) return;
        if (character == 0) return addDamage();
        if (character == U'\r') character = U'\n';
        if (character == U'\n') ++line_;
        text_.characters += character;
    }

    void addDamage() {
        previous_ = replacementCharacter;
        text_.characters += replacementCharacter;
        if (text_.damagedLines.empty() || text_.damagedLines.back() != line_)
            text_.damagedLines.push_back(line_);
    }

    StringsTableText take() { return std::move(text_); }

  private:
    StringsTableText text_;
    std::size_t line_ = 1;
    char32_t previous_ = 0;
};

struct Decoded {
    char32_t character = 0;
    std::size_t length = 1;
    bool valid = false;
};

Decoded utf8At(std::string_view bytes, std::size_t place) {
    const std::uint8_t first = byteAt(bytes, place);
    if (first < 0x80) return {first, 1, true};
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (first < 0xC2 || first > 0xF4) return {};
    auto code = static_cast<char32_t>(first & (0x7Fu >> length));
    for (std::size_t index = 1; index < length; ++index) {
        if (place + index >= bytes.size() || (byteAt(bytes, place + index) & 0xC0) != 0x80)
            return {0, index, false};
        code = (code << 6) | (byteAt(bytes, place + index) & 0x3Fu);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool surrogate = isLeadingSurrogate(code) || isTrailingSurrogate(code);
    const bool valid = !overlong && !surrogate && code <= 0x10FFFF;
    return {code, length, valid};
}

StringsTableText decodeUtf8(std::string_view bytes) {
    Collector collector(bytes.size());
    for (std::size_t place = 0; place < bytes.size();) {
        const Decoded decoded = utf8At(bytes, place);
        if (decoded.valid)
            collector.add(decoded.character);
        else
            collector.addDamage();
        place += decoded.length;
    }
    return collector.take();
}

enum class ByteOrder { little, big };

StringsTableText decodeUtf16(std::string_view bytes, ByteOrder order) {
    const auto unitAt = [&](std::size_t place) -> std::optional<char32_t> {
        if (place + 1 >= bytes.size()) return std::nullopt;
        const std::uint8_t first = byteAt(bytes, place);
        const std::uint8_t second = byteAt(bytes, place + 1);
        return order == ByteOrder::little ? static_cast<char32_t>(second << 8 | first)
                                          : static_cast<char32_t>(first << 8 | second);
    };
    Collector collector(bytes.size() / 2);
    for (std::size_t place = 0; place < bytes.size(); place += 2) {
        const auto unit = unitAt(place);
        const auto next = unitAt(place + 2);
        if (unit && next && isLeadingSurrogate(*unit) && isTrailingSurrogate(*next)) {
            collector.add(fromSurrogates(*unit, *next));
            place += 2;
        } else if (!unit || isLeadingSurrogate(*unit) || isTrailingSurrogate(*unit)) {
            collector.addDamage();
        } else {
            collector.add(*unit);
        }
    }
    return collector.take();
}

}  // namespace

StringsTableText decodeStringsTable(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE")) return decodeUtf16(bytes.substr(2), ByteOrder::little);
    if (bytes.starts_with("\xFE\xFF")) return decodeUtf16(bytes.substr(2), ByteOrder::big);
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    return decodeUtf8(bytes);
}

}  // namespace installer

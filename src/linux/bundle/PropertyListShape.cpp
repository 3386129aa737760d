#include "linux/bundle/PropertyListShape.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "foundation/text/Text.h"

namespace installer {

namespace {

constexpr std::size_t mostContainersInXml = 5000;
constexpr std::size_t mostKeysInXml = 20'000;
constexpr std::uint64_t mostBytesMovedInXml = std::uint64_t{1} << 30;
constexpr std::size_t deepestNesting = 100;
constexpr std::size_t mostValues = 200'000;
constexpr std::uint64_t mostBytesInValues = std::uint64_t{64} << 20;

/// Counts the containers instead of their depth: comments and declarations, which the reader passes
/// over in its own way, can then hide nothing.
bool elementsAreHarmless(std::string_view text) {
    std::size_t containers = 0;
    std::size_t keys = 0;
    for (std::size_t place = text.find('<'); place != std::string_view::npos;
         place = text.find('<', place + 1)) {
        const std::string_view element = text.substr(place + 1, 5);
        if (element.starts_with("dict") || element == "array") ++containers;
        if (element.starts_with("key")) ++keys;
    }
    return containers <= mostContainersInXml && keys <= mostKeysInXml;
}

/// For each entity the reader moves what is left of its text.
bool entitiesAreHarmless(std::string_view text) {
    std::uint64_t moved = 0;
    std::size_t end = text.size();
    for (std::size_t place = text.size(); place-- > 0;) {
        if (text[place] == '<') end = place;
        if (text[place] == '&') moved += end - place;
    }
    return moved <= mostBytesMovedInXml;
}

/// A text that holds a NUL is read whole, and written to its NUL.
bool xmlIsHarmless(std::string_view text) {
    return elementsAreHarmless(text) && entitiesAreHarmless(text) &&
           text.find('\0') == std::string_view::npos;
}

/// Follows the references of a binary property list as its reader would, and counts what the reader
/// would make of them: it makes each value anew wherever it is referred to.
class BinaryWalk {
  public:
    explicit BinaryWalk(std::string_view bytes) : bytes_(bytes) {}

    bool isHarmless() {
        constexpr std::size_t trailerSize = 32;
        if (bytes_.size() < trailerSize) return true;
        const std::size_t trailer = bytes_.size() - trailerSize;
        offsetSize_ = number(trailer + 6, 1).value_or(0);
        referenceSize_ = number(trailer + 7, 1).value_or(0);
        count_ = number(trailer + 8, 8).value_or(0);
        const std::uint64_t root = number(trailer + 16, 8).value_or(0);
        table_ = number(trailer + 24, 8).value_or(0);
        return visit(root);
    }

  private:
    enum class Kind { leaf, text, wideText, container };

    struct Object {
        Kind kind = Kind::leaf;
        std::uint64_t first = 0;   ///< where the contents begin
        std::uint64_t length = 0;  ///< how many references, bytes or units of two bytes these are
    };

    struct Container {
        std::uint64_t next = 0;  ///< where the next reference stands
        std::uint64_t left = 0;
    };

    /// Of a number that has more than eight bytes, the reader takes the last eight.
    [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t place,
                                                      std::uint64_t size) const {
        if (size == 0 || place > bytes_.size() || bytes_.size() - place < size) return std::nullopt;
        std::uint64_t value = 0;
        for (std::uint64_t index = size > 8 ? size - 8 : 0; index < size; ++index)
            value = value << 8 | static_cast<std::uint8_t>(bytes_[place + index]);
        return value;
    }

    /// nullopt if there is no such object, or it is broken.
    [[nodiscard]] std::optional<Object> object(std::uint64_t index) const {
        if (index >= count_ || count_ > bytes_.size() || table_ > bytes_.size())
            return std::nullopt;
        const auto offset = number(table_ + index * offsetSize_, offsetSize_);
        if (!offset) return std::nullopt;
        const auto mark = number(*offset, 1);
        if (!mark) return std::nullopt;
        std::uint64_t length = *mark & 0xF;
        std::uint64_t first = *offset + 1;
        if (length == 0xF) {
            const auto sizeMark = number(first, 1);
            if (!sizeMark || *sizeMark >> 4 != 1) return std::nullopt;
            const std::uint64_t size = std::uint64_t{1} << (*sizeMark & 0xF);
            const auto longLength = number(first + 1, size);
            if (!longLength) return std::nullopt;
            length = *longLength;
            first += 1 + size;
        }
        if (length > bytes_.size()) return std::nullopt;
        switch (*mark >> 4) {
            case 0xA:
            case 0xC:
                return Object{Kind::container, first, length};
            case 0xD:
                return Object{Kind::container, first, 2 * length};
            case 0x5:
                return Object{Kind::text, first, length};
            case 0x6:
                return Object{Kind::wideText, first, length};
            default:
                return Object{Kind::leaf, first, length};
        }
    }

    /// The writer would cut it short, and the reader could refuse all that was written.
    [[nodiscard]] bool isBrokenText(const Object& object) const {
        if (object.first > bytes_.size()) return false;
        const std::string_view rest = bytes_.substr(object.first);
        if (object.kind == Kind::text) {
            const std::string_view text = rest.substr(0, object.length);
            return !isUtf8(text) || text.find('\0') != std::string_view::npos;
        }
        if (object.kind != Kind::wideText) return false;
        const std::string_view text = rest.substr(0, 2 * object.length);
        for (std::size_t place = 0; place + 1 < text.size(); place += 2) {
            if (text[place] == '\0' && text[place + 1] == '\0') return true;
        }
        return false;
    }

    /// How many bytes the reader takes for the value itself.
    [[nodiscard]] static std::uint64_t cost(const Object& object) {
        if (object.kind == Kind::container) return 0;
        return object.kind == Kind::wideText ? 4 * object.length : object.length;
    }

    bool visit(std::uint64_t root) {
        std::vector<Container> path;
        std::size_t values = 0;
        std::uint64_t bytes = 0;
        std::vector<bool> isWhole(std::min<std::uint64_t>(count_, bytes_.size()), false);
        const auto meet = [&](std::uint64_t index) {
            ++values;
            const auto met = object(index);
            if (!met) return values <= mostValues;
            bytes += cost(*met);
            if (met->kind == Kind::container) path.push_back({met->first, met->length});
            if (values > mostValues || bytes > mostBytesInValues || path.size() > deepestNesting)
                return false;
            isWhole[index] = isWhole[index] || !isBrokenText(*met);
            return static_cast<bool>(isWhole[index]);
        };
        if (!meet(root)) return false;
        while (!path.empty()) {
            if (path.back().left == 0) {
                path.pop_back();
                continue;
            }
            const auto reference = number(path.back().next, referenceSize_);
            path.back().next += referenceSize_;
            --path.back().left;
            if (!reference)
                path.back().left = 0;
            else if (!meet(*reference))
                return false;
        }
        return true;
    }

    std::string_view bytes_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t table_ = 0;
};

}  // namespace

bool hasHarmlessShape(std::string_view propertyList) {
    if (propertyList.starts_with("bplist")) return BinaryWalk(propertyList).isHarmless();
    return xmlIsHarmless(propertyList);
}

}  // namespace installer

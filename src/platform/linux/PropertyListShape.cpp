#include "platform/linux/PropertyListShape.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace installer {

namespace {

constexpr std::size_t mostContainersInXml = 5000;
constexpr std::size_t deepestNesting = 100;
constexpr std::size_t mostValues = 200'000;

/// Counts the containers instead of their depth: comments and declarations, which the reader passes
/// over in its own way, can then hide nothing.
bool xmlIsHarmless(std::string_view text) {
    std::size_t containers = 0;
    for (std::size_t place = text.find('<'); place != std::string_view::npos;
         place = text.find('<', place + 1)) {
        const std::string_view element = text.substr(place + 1, 5);
        if (element.starts_with("dict") || element == "array") ++containers;
    }
    return containers <= mostContainersInXml;
}

/// Follows the references of a binary property list as its reader would.
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
    struct Container {
        std::uint64_t next = 0;  ///< where the next reference stands
        std::uint64_t left = 0;
    };

    [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t place,
                                                      std::uint64_t size) const {
        if (size == 0 || size > 8 || place > bytes_.size() || bytes_.size() - place < size)
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::uint64_t index = 0; index < size; ++index)
            value = value << 8 | static_cast<std::uint8_t>(bytes_[place + index]);
        return value;
    }

    /// The references of the object; none when it is no container, or a broken one.
    [[nodiscard]] std::optional<Container> container(std::uint64_t object) const {
        if (object >= count_ || count_ > bytes_.size() || table_ > bytes_.size())
            return std::nullopt;
        const auto offset = number(table_ + object * offsetSize_, offsetSize_);
        if (!offset) return std::nullopt;
        const auto mark = number(*offset, 1);
        if (!mark) return std::nullopt;
        const std::uint64_t kind = *mark >> 4;
        if (kind != 0xA && kind != 0xC && kind != 0xD) return std::nullopt;
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
        return Container{first, kind == 0xD ? 2 * length : length};
    }

    bool visit(std::uint64_t root) {
        std::vector<Container> path;
        std::size_t values = 1;
        if (const auto first = container(root)) path.push_back(*first);
        while (!path.empty()) {
            if (path.back().left == 0) {
                path.pop_back();
                continue;
            }
            if (++values > mostValues) return false;
            const auto reference = number(path.back().next, referenceSize_);
            path.back().next += referenceSize_;
            --path.back().left;
            if (!reference) {
                path.back().left = 0;
                continue;
            }
            if (const auto inner = container(*reference)) path.push_back(*inner);
            if (path.size() > deepestNesting) return false;
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

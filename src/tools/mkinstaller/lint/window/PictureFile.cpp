#include "tools/mkinstaller/lint/window/PictureFile.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace installer {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n"sv;

enum class ByteOrder { little, big };

/// The number in the bytes; none where the file ends before it.
std::optional<std::uint32_t> numberAt(std::string_view bytes, std::size_t place, std::size_t size,
                                      ByteOrder order) {
    if (place > bytes.size() || size > bytes.size() - place) return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < size; ++index) {
        const std::size_t next = order == ByteOrder::big ? index : size - 1 - index;
        number = number << 8U | static_cast<unsigned char>(bytes[place + next]);
    }
    return number;
}

/// The check sum that ends each chunk of a PNG file.
std::uint32_t checkSum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0);
    }
    return ~sum;
}

/// Whether the chunks follow each other up to the last one, none damaged.
bool arePngChunksWhole(std::string_view bytes) {
    std::size_t place = pngSignature.size();
    for (;;) {
        const auto length = numberAt(bytes, place, 4, ByteOrder::big);
        if (!length || *length > bytes.size() || bytes.size() - place < 12 + std::size_t{*length}) {
            return false;
        }
        const std::string_view chunk = bytes.substr(place + 4, 4 + std::size_t{*length});
        if (numberAt(bytes, place + 8 + *length, 4, ByteOrder::big) != checkSum(chunk))
            return false;
        if (chunk.starts_with("IEND")) return true;
        place += 12 + std::size_t{*length};
    }
}

PictureFile readPng(std::string_view bytes) {
    return {.kind = PictureKind::png,
            .width = numberAt(bytes, 16, 4, ByteOrder::big).value_or(0),
            .height = numberAt(bytes, 20, 4, ByteOrder::big).value_or(0),
            .isWhole = arePngChunksWhole(bytes)};
}

/// The first directory of a TIFF file: its size and whether the strips with its dots are there.
class TiffDirectory {
  public:
    TiffDirectory(std::string_view bytes, ByteOrder order) : bytes_(bytes), order_(order) {
        const auto start = number(4, 4);
        const auto count = start ? number(*start, 2) : std::nullopt;
        if (!count) return;
        for (std::uint32_t index = 0; index < *count; ++index) {
            const std::size_t entry = std::size_t{*start} + 2 + std::size_t{12} * index;
            if (entry + 12 > bytes_.size()) return;
            read(entry);
        }
        isWhole_ = hasStrips();
    }

    [[nodiscard]] PictureFile picture() const {
        return {.kind = PictureKind::tiff, .width = width_, .height = height_, .isWhole = isWhole_};
    }

  private:
    struct Values {
        std::uint32_t type = 0;
        std::uint32_t count = 0;
        std::size_t place = 0;
    };

    [[nodiscard]] std::optional<std::uint32_t> number(std::size_t place, std::size_t size) const {
        return numberAt(bytes_, place, size, order_);
    }
    [[nodiscard]] static std::size_t sizeOf(std::uint32_t type) { return type == 3 ? 2 : 4; }
    [[nodiscard]] std::optional<std::uint32_t> value(const Values& values,
                                                     std::uint32_t index) const {
        return number(values.place + sizeOf(values.type) * index, sizeOf(values.type));
    }

    void read(std::size_t entry) {
        // The caller has checked that the whole entry is there.
        Values values{number(entry + 2, 2).value_or(0), number(entry + 4, 4).value_or(0),
                      entry + 8};
        if (sizeOf(values.type) * std::size_t{values.count} > 4) {
            values.place = number(entry + 8, 4).value_or(0);
        }
        switch (number(entry, 2).value_or(0)) {
            case 256:
                width_ = value(values, 0).value_or(0);
                break;
            case 257:
                height_ = value(values, 0).value_or(0);
                break;
            case 273:
                offsets_ = values;
                break;
            case 279:
                sizes_ = values;
                break;
            default:
                break;
        }
    }

    [[nodiscard]] bool hasStrips() const {
        if (offsets_.count == 0 || offsets_.count != sizes_.count) return false;
        for (std::uint32_t index = 0; index < offsets_.count; ++index) {
            const auto offset = value(offsets_, index);
            const auto size = value(sizes_, index);
            if (!offset || !size || std::size_t{*offset} + *size > bytes_.size()) return false;
        }
        return true;
    }

    std::string_view bytes_;
    ByteOrder order_;
    Values offsets_;
    Values sizes_;
    std::uint32_t width_ = 0;
    std::uint32_t height_ = 0;
    bool isWhole_ = false;
};

}  // namespace

std::optional<PictureFile> readPicture(std::string_view bytes) {
    if (bytes.starts_with(pngSignature)) return readPng(bytes);
    if (bytes.starts_with("II*\0"sv)) return TiffDirectory(bytes, ByteOrder::little).picture();
    if (bytes.starts_with("MM\0*"sv)) return TiffDirectory(bytes, ByteOrder::big).picture();
    return std::nullopt;
}

}  // namespace installer

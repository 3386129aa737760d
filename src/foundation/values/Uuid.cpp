#include "foundation/values/Uuid.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace installer {

namespace {

using UuidBytes = std::array<std::uint8_t, 16>;

UuidBytes randomBytes() {
    std::random_device source;
    UuidBytes bytes{};
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(source() & 0xFFU);
    return bytes;
}

/// The bits that tell a reader "random" (version 4) and "laid out as RFC 4122 says" (variant 1).
void markAsVersionFour(UuidBytes& bytes) {
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
}

}  // namespace

std::string newUuidText() {
    constexpr const char* digits = "0123456789ABCDEF";
    UuidBytes bytes = randomBytes();
    markAsVersionFour(bytes);
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
        text += digits[bytes[index] >> 4U];
        text += digits[bytes[index] & 0x0FU];
    }
    return text;
}

}  // namespace installer

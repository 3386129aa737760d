#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace installer {

enum class PictureKind { png, tiff };

/// What a picture's file says of itself.
struct PictureFile {
    PictureKind kind = PictureKind::png;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool isWhole = false;  ///< everything that the file promises is there and undamaged
};

/// None when the bytes begin like no picture that the installer shows.
[[nodiscard]] std::optional<PictureFile> readPicture(std::string_view bytes);

}  // namespace installer

#pragma once

#include <QIcon>
#include <string>

namespace installer {

/// The picture in the file as an icon for a row of a list: whatever its own size, it is as large
/// as fits into a square of that side. No icon when the file cannot be read.
[[nodiscard]] QIcon rowIcon(const std::string& path, int side);

/// What stands in a row without a picture of its own: grey, for light and dark lists alike.
[[nodiscard]] QIcon placeholderIcon(int side);

}  // namespace installer

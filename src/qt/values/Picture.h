#pragma once

#include <QImage>
#include <string>

#include "ports/window/Image.h"

class QLabel;

namespace installer {

/// The picture in the file, whatever its kind and its name; null if it is missing or none.
[[nodiscard]] QImage readPicture(const std::string& path);

/// Shows the picture in the label; shows nothing if the file is missing or not a picture. A label
/// with a fixed size scales the picture to fit, in the resolution of its screen. Any other label
/// takes the size of the picture.
void showPicture(QLabel& label, const Image& image);

}  // namespace installer

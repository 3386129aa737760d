#pragma once

#include "ports/window/Image.h"

class QLabel;
class QPalette;

namespace installer {

/// Shows the picture in the label; shows nothing if the file is missing or not a picture. A label
/// with a fixed size scales the picture to fit, in the resolution of its screen. Any other label
/// takes the size of the picture.
void showPicture(QLabel& label, const Image& image);

/// The picture for a label of that palette: in a dark window the file NAME-Dark.TYPE beside
/// NAME.TYPE where there is one, else the picture itself.
[[nodiscard]] Image pictureFor(const QPalette& palette, const Image& image);

}  // namespace installer

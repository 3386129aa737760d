#pragma once

#include "ports/window/Image.h"

class QLabel;

namespace installer {

/// Shows the picture in the label, or nothing when the file is missing or no picture. A label of a
/// fixed size shows it as large as fits, as sharp as its screen allows; any other label takes the
/// picture's size.
void showPicture(QLabel& label, const Image& image);

}  // namespace installer

#pragma once

#include <string>

#include "linux/process/Environment.h"
#include "ports/window/Image.h"

namespace installer {

/// The icon with which the desktop's menus show the program of that path: that of the first desktop
/// entry which starts it, in the user's folder and then in those of the machine (XDG_DATA_HOME,
/// XDG_DATA_DIRS). An icon that has a name only is looked for in the theme that every desktop falls
/// back on (hicolor) and in `pixmaps`. No picture when there is none.
[[nodiscard]] Image menuIcon(const std::string& program, const Environment& environment);

}  // namespace installer

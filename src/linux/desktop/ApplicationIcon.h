#pragma once

#include <string>

#include "ports/window/Image.h"

namespace installer {

class Bundles;

/// The icon of the application package at the path: the file of its resources that its
/// CFBundleIconFile names, with or without its suffix, else "AppIcon". A folder that is no package
/// has the icon of the first package of an application in it, in the folder's own order: that is
/// how a host's folder is shown. No picture for anything else.
[[nodiscard]] Image applicationIcon(const std::string& path, Bundles& bundles);

}  // namespace installer

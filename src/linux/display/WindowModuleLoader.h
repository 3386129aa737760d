#pragma once

#include <memory>
#include <string>

#include "ports/window/WindowModule.h"

namespace installer {

/// Loads the window module of the bundle, `Contents/Frameworks/InstallerWindow.so`, and makes the
/// adapters in it. Null, with the reason in the system log, when the bundle has no such file, when
/// it cannot be loaded, as on a machine without the window toolkit, or when there is no display.
/// The code stays loaded until the process ends.
[[nodiscard]] std::unique_ptr<WindowModule> loadWindowModule(const std::string& bundleFolder,
                                                             const WindowModuleContext& context);

}  // namespace installer

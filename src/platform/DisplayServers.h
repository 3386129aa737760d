#pragma once

#include <string>

namespace installer {

// Whether a display server would take this process as a client, asked without the window toolkit,
// which ends the process when there is none. Nothing stays connected. A server on another machine
// that does not answer holds the caller up as it would hold up the toolkit.

/// The X server that the environment names in DISPLAY, with the user's credentials for it.
[[nodiscard]] bool reachesXServer();

/// The Wayland compositor of that name, which is a socket in the folder XDG_RUNTIME_DIR or an
/// absolute path.
[[nodiscard]] bool reachesWaylandCompositor(const std::string& name);

}  // namespace installer

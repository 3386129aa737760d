#pragma once

#include <memory>
#include <string>

namespace installer {

// Whether a display server would take this process as a client, asked without the window toolkit,
// which ends the process when there is none. A server on another machine that does not answer holds
// the caller up as it would hold up the toolkit.

/// A connection to the X server that the environment names in DISPLAY, with the user's credentials
/// for it; null when it cannot be made. A server may start anew when its last client leaves, and
/// refuse everybody meanwhile, so this is to be held until the toolkit has connected.
[[nodiscard]] std::shared_ptr<void> connectToXServer();

/// The Wayland compositor of that name, which is a socket in the folder XDG_RUNTIME_DIR or an
/// absolute path.
[[nodiscard]] bool reachesWaylandCompositor(const std::string& name);

}  // namespace installer

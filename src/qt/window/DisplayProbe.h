#pragma once

#include <functional>
#include <memory>
#include <string>

namespace installer {

/// What the probe can ask about the environment of the process.
struct DisplaySurroundings {
    /// An environment variable; empty if it is not set.
    std::function<std::string(const std::string& name)> variable;
    std::function<std::shared_ptr<void>()> connectToXServer;
    std::function<bool(const std::string& name)> reachesWaylandCompositor;
    /// Whether the toolkit's plug-in for Wayland is installed. On many systems it is a separate
    /// package.
    bool hasWaylandPlugin = false;
};

[[nodiscard]] DisplaySurroundings displaySurroundings();

struct DisplayProbe {
    bool usable = false;
    /// The toolkit's platform to ask for by name; empty if the toolkit chooses the right one
    /// itself.
    std::string platform = {};
    std::string reason = {};  ///< why no window can be shown
    /// The connection to the X server, if one was asked. Hold it until the toolkit has connected.
    std::shared_ptr<void> connection = {};
};

/// Whether the toolkit can show a window. Ask before the toolkit starts: without a display it
/// aborts the process.
[[nodiscard]] DisplayProbe probeDisplay(const DisplaySurroundings& surroundings);

}  // namespace installer

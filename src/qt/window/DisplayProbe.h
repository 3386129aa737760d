#pragma once

#include <functional>
#include <memory>
#include <string>

namespace installer {

/// What is known of the place that a window would be shown on.
struct DisplaySurroundings {
    /// A variable of the environment; empty when it is not set.
    std::function<std::string(const std::string& name)> variable;
    std::function<std::shared_ptr<void>()> connectToXServer;
    std::function<bool(const std::string& name)> reachesWaylandCompositor;
    /// Whether the toolkit has its plug-in for Wayland, a package of its own on many systems.
    bool hasWaylandPlugin = false;
};

[[nodiscard]] DisplaySurroundings displaySurroundings();

struct DisplayProbe {
    bool usable = false;
    /// The toolkit's platform that must be asked for by name; empty where its own choice works.
    std::string platform = {};
    std::string reason = {};  ///< why no window can be shown
    /// Where an X server was asked: to be held until the toolkit has connected.
    std::shared_ptr<void> connection = {};
};

/// Whether the toolkit could show a window. It ends the process when it is started where it
/// cannot, so this is asked first.
[[nodiscard]] DisplayProbe probeDisplay(const DisplaySurroundings& surroundings);

}  // namespace installer

#include "qt/window/DisplayProbe.h"

#include <QDir>
#include <QLibraryInfo>
#include <array>
#include <cstdlib>
#include <string_view>

#include "ports/window/DisplayServers.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

/// Platforms of the toolkit that need nothing but themselves.
constexpr std::array<std::string_view, 3> selfSufficient = {"offscreen", "minimal", "vnc"};

class Probe {
  public:
    explicit Probe(const DisplaySurroundings& surroundings) : surroundings_(surroundings) {}

    [[nodiscard]] DisplayProbe ofServers() {
        if (reachesX()) return usable();
        if (reachesWayland()) return usable("wayland");
        if (reason_.empty()) reason_ = "neither DISPLAY nor WAYLAND_DISPLAY is set";
        return {.reason = reason_};
    }

    /// Probes the platforms that the environment names. They are separated by ";", and each may
    /// have arguments after a ":". The toolkit takes the first that works.
    [[nodiscard]] DisplayProbe ofNamed(const std::string& names) {
        for (const QString& entry : toQt(names).split(u';', Qt::SkipEmptyParts)) {
            const std::string name = fromQt(entry.section(u':', 0, 0));
            if (works(name)) return usable();
        }
        if (reason_.empty()) reason_ = "QT_QPA_PLATFORM names no known display: " + names;
        return {.reason = reason_};
    }

  private:
    [[nodiscard]] DisplayProbe usable(const std::string& platform = {}) const {
        return {.usable = true, .platform = platform, .connection = connection_};
    }

    bool works(const std::string& platform) {
        for (const std::string_view name : selfSufficient)
            if (platform == name) return true;
        if (platform == "xcb") return reachesX();
        return platform.starts_with("wayland") && reachesWayland();
    }

    bool reachesX() {
        const std::string display = surroundings_.variable("DISPLAY");
        if (display.empty()) return false;
        connection_ = surroundings_.connectToXServer();
        if (connection_) return true;
        explain("the X server " + display + " cannot be reached");
        return false;
    }

    bool reachesWayland() {
        const std::string display = surroundings_.variable("WAYLAND_DISPLAY");
        if (display.empty()) return false;
        if (!surroundings_.reachesWaylandCompositor(display)) {
            explain("the Wayland compositor " + display + " cannot be reached");
            return false;
        }
        if (surroundings_.hasWaylandPlugin) return true;
        explain("Qt's plug-in for Wayland is not installed");
        return false;
    }

    void explain(const std::string& reason) { reason_ += (reason_.empty() ? "" : "; ") + reason; }

    const DisplaySurroundings& surroundings_;
    std::string reason_;
    std::shared_ptr<void> connection_;
};

}  // namespace

DisplaySurroundings displaySurroundings() {
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QLatin1String("/platforms"));
    return {.variable =
                [](const std::string& name) {
                    const char* value = std::getenv(name.c_str());
                    return std::string(value == nullptr ? "" : value);
                },
            .connectToXServer = connectToXServer,
            .reachesWaylandCompositor = reachesWaylandCompositor,
            .hasWaylandPlugin =
                !plugins.entryList({QStringLiteral("libqwayland-*.so")}, QDir::Files).isEmpty()};
}

DisplayProbe probeDisplay(const DisplaySurroundings& surroundings) {
    Probe probe(surroundings);
    const std::string named = surroundings.variable("QT_QPA_PLATFORM");
    return named.empty() ? probe.ofServers() : probe.ofNamed(named);
}

}  // namespace installer

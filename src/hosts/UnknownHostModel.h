#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace installer {

struct Platform;

/// A folder that the user picked to receive the plug-in, whatever application it belongs to. It
/// stays as the user picked it: no target volume is put before it.
class UnknownHostModel {
  public:
    /// The path may be empty: the user has not picked a folder yet. The platform outlives the
    /// host.
    UnknownHostModel(Platform& platform, std::string plugInPath)
        : platform_(platform), plugInPath_(std::move(plugInPath)) {}

    /// The text that people read for "a folder of your own", in the language of the moment.
    [[nodiscard]] std::string hostName() const;
    /// Always true: what the user picked counts.
    [[nodiscard]] bool hostIsInstalled() const { return true; }
    [[nodiscard]] bool hostIsSelected() const { return hostIsSelected_; }
    void setHostIsSelected(bool selected) { hostIsSelected_ = selected; }
    /// Behind every other host but the year releases of Photoshop, whose order wraps to huge
    /// numbers.
    [[nodiscard]] std::uint64_t displaySortOrder() const { return 6000; }

    [[nodiscard]] const std::string& plugInPath() const { return plugInPath_; }
    void setPlugInPath(const std::string& path) { plugInPath_ = path; }
    [[nodiscard]] const std::string& scriptsPath() const { return scriptsPath_; }
    void setScriptsPath(const std::string& path) { scriptsPath_ = path; }
    [[nodiscard]] const std::string& panelsPath() const { return panelsPath_; }
    void setPanelsPath(const std::string& path) { panelsPath_ = path; }
    [[nodiscard]] bool shouldInstallScripts() const { return shouldInstallScripts_; }
    void setShouldInstallScripts(bool install) { shouldInstallScripts_ = install; }
    [[nodiscard]] bool shouldInstallPanels() const { return shouldInstallPanels_; }
    void setShouldInstallPanels(bool install) { shouldInstallPanels_ = install; }
    [[nodiscard]] bool shouldInstallPlugIns() const { return shouldInstallPlugIns_; }
    void setShouldInstallPlugIns(bool install) { shouldInstallPlugIns_ = install; }

  private:
    Platform& platform_;
    std::string plugInPath_;
    bool shouldInstallScripts_ = false;
    bool shouldInstallPanels_ = false;
    bool shouldInstallPlugIns_ = true;
    std::string scriptsPath_;
    std::string panelsPath_;
    bool hostIsSelected_ = false;
};

}  // namespace installer

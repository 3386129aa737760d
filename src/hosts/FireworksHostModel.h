#pragma once

#include <string>

namespace installer {

struct Platform;

/// Adobe Fireworks. It has neither a selection, nor a place in the order of the list, nor an
/// application folder: code that needs one of them asks for the kind first.
class FireworksHostModel {
  public:
    /// The Fireworks of that name in the machine's applications folder. The platform outlives the
    /// host.
    FireworksHostModel(Platform& platform, std::string hostName);

    [[nodiscard]] const std::string& hostName() const { return hostName_; }
    /// Whether the plug-in folder exists at this moment.
    [[nodiscard]] bool hostIsInstalled() const;
    [[nodiscard]] bool hostIs64Bit() const { return false; }

    [[nodiscard]] const std::string& plugInPath() const { return plugInPath_; }
    void setPlugInPath(const std::string& path) { plugInPath_ = path; }
    [[nodiscard]] const std::string& panelsPath() const { return panelsPath_; }
    void setPanelsPath(const std::string& path) { panelsPath_ = path; }
    [[nodiscard]] bool shouldInstallPlugIns() const { return shouldInstallPlugIns_; }
    void setShouldInstallPlugIns(bool install) { shouldInstallPlugIns_ = install; }

    // Fireworks takes no scripts and no panels. The setters are there for code that sets up any
    // kind of host in the same way, and change nothing.
    [[nodiscard]] const std::string& scriptsPath() const { return scriptsPath_; }
    void setScriptsPath(const std::string& /*path*/) {}
    [[nodiscard]] bool shouldInstallScripts() const { return shouldInstallScripts_; }
    void setShouldInstallScripts(bool /*install*/) {}
    [[nodiscard]] bool shouldInstallPanels() const { return shouldInstallPanels_; }
    void setShouldInstallPanels(bool /*install*/) {}

  private:
    void initPaths(const std::string& hostName);

    Platform& platform_;
    std::string plugInPath_;
    bool shouldInstallScripts_ = false;
    bool shouldInstallPanels_ = false;
    bool shouldInstallPlugIns_ = true;
    std::string scriptsPath_;
    std::string panelsPath_;
    std::string hostName_;
};

}  // namespace installer

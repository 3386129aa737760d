#pragma once

#include <cstdint>
#include <string>

namespace installer {

struct Platform;

/// Adobe Lightroom. Plug-ins, scripts and panels have no place in it; it takes an external-editor
/// preset, a text that tells it about an application that photos can be opened in.
class LightRoomHostModel {
  public:
    /// The host is installed when the user's folder of external-editor presets exists; that is
    /// looked up once. The platform outlives the host.
    LightRoomHostModel(Platform& platform, std::string hostName);

    [[nodiscard]] const std::string& hostName() const { return host_name_; }
    [[nodiscard]] bool hostIsInstalled() const { return hostIsInstalled_; }
    [[nodiscard]] bool hostIsSelected() const { return hostIsSelected_; }
    void setHostIsSelected(bool selected) { hostIsSelected_ = selected; }
    /// Always empty: nothing says where Lightroom itself is.
    [[nodiscard]] const std::string& appPath() const { return lightroom_app_path_; }
    [[nodiscard]] std::string plugInPath() const { return ""; }
    [[nodiscard]] std::string scriptsPath() const { return ""; }
    [[nodiscard]] std::string panelsPath() const { return ""; }
    [[nodiscard]] bool shouldInstallScripts() const { return false; }
    [[nodiscard]] bool shouldInstallPanels() const { return false; }
    [[nodiscard]] std::uint64_t displaySortOrder() const { return 5000; }

    /// The preset that makes the stand-alone application of that name an external editor, with a
    /// new identifier on each call. The names go into it as they stand, quotes included.
    [[nodiscard]] std::string templateFileTextWithAppName(const std::string& applicationName) const;

  private:
    Platform& platform_;
    bool hostIsInstalled_ = false;
    std::string host_name_;
    std::string lightroom_app_path_;
    bool hostIsSelected_ = true;
};

}  // namespace installer

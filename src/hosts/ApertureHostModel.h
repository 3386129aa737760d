#pragma once

#include <cstdint>
#include <string>

namespace installer {

struct Platform;

/// Apple Aperture. Plug-ins, scripts and panels of the kinds that are installed have no place in
/// it.
class ApertureHostModel {
  public:
    /// The host is installed when there is an item, of whatever kind, where the folder that holds
    /// Aperture's user plug-ins lies; that is looked up once. The platform outlives the host.
    ApertureHostModel(Platform& platform, std::string hostName);

    [[nodiscard]] const std::string& hostName() const { return host_name_; }
    [[nodiscard]] bool hostIsInstalled() const { return hostIsInstalled_; }
    [[nodiscard]] bool hostIsSelected() const { return hostIsSelected_; }
    void setHostIsSelected(bool selected) { hostIsSelected_ = selected; }
    /// The usual path of Aperture, whether it exists or not.
    [[nodiscard]] std::string appPath() const;
    [[nodiscard]] std::string plugInPath() const { return ""; }
    [[nodiscard]] std::string scriptsPath() const { return ""; }
    [[nodiscard]] std::string panelsPath() const { return ""; }
    [[nodiscard]] bool shouldInstallScripts() const { return false; }
    [[nodiscard]] bool shouldInstallPanels() const { return false; }
    /// The same as Lightroom's: between the two the order of discovery decides.
    [[nodiscard]] std::uint64_t displaySortOrder() const { return 5000; }

  private:
    Platform& platform_;
    bool hostIsInstalled_ = false;
    std::string host_name_;
    // Named as in Lightroom's model, so that the two kinds have the same fields; never used here.
    [[maybe_unused]] std::string lightroom_app_path_;
    bool hostIsSelected_ = true;
};

}  // namespace installer

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace installer {

struct Platform;

/// The user's `~/Library/Preferences` and `~/Library/Application Support`; nullopt if the user
/// has no home folder.
[[nodiscard]] std::optional<std::string> NSUserPreferencesDirectory(const Platform& platform);
[[nodiscard]] std::optional<std::string> ApplicationSupportDirectory(const Platform& platform);

/// Every place that the installer reads its payload from or installs to, computed anew on each
/// call. Holds no state. Paths of the user's folders are empty when the user has no home folder.
class PlugInFilesModel {
  public:
    explicit PlugInFilesModel(Platform& platform) : platform_(platform) {}

    // The payload, in the running bundle.
    [[nodiscard]] std::string getSharedSupportPathInBundleWithSuffix(
        const std::string& suffix) const;
    [[nodiscard]] std::string getPlugInDirInBundle() const;
    [[nodiscard]] std::string getAutoLayerDirInBundle() const;
    [[nodiscard]] std::string getStandAloneAppsDirInBundle() const;
    /// `<resources>/files`, the tree that an install run takes its payload from.
    [[nodiscard]] std::string payloadFolder() const;

    /// The full paths of the entries directly in the folder, hidden ones included, in the file
    /// system's order; empty if the folder cannot be read.
    [[nodiscard]] std::vector<std::string> getFullPathsOfFilesInBundle(
        const std::string& folder) const;
    [[nodiscard]] std::vector<std::string> getFullPathsOfPlugInsInBundle() const;

    // Destinations on the target volume.
    [[nodiscard]] std::string companyAppSupportPath() const;
    [[nodiscard]] std::string productAppSupportPath() const;
    [[nodiscard]] std::string appSupportPathForProduct(const std::string& product) const;
    [[nodiscard]] std::string productUserAppSupportPath() const;
    [[nodiscard]] std::string userAppSupportPathForProduct(const std::string& product) const;
    [[nodiscard]] std::string userCompanyAppSupportPath() const;
    [[nodiscard]] std::string userSettingsPath() const;
    [[nodiscard]] std::string settingsInstallPath() const;
    [[nodiscard]] std::string standAloneAppsInstallPath() const;
    [[nodiscard]] std::string installerLogPath() const;
    /// The list of external editors that a run writes, in the folder of the product that reads it.
    [[nodiscard]] std::string externalEditorsPath() const;
    /// The file that holds a random identifier of the installation.
    [[nodiscard]] std::string identifierPath() const;
    [[nodiscard]] std::string lightRoomSupportPath() const;
    [[nodiscard]] std::string lightRoomPresetDir() const;
    /// `Aperture/Plug-Ins` in the user's Application Support.
    [[nodiscard]] std::string apertureUserPluginDir() const;

    /// Whether the user's first preferred language is that code; letter case does not count.
    [[nodiscard]] bool IsCurrentLocale(const std::string& code) const;

  private:
    Platform& platform_;
};

}  // namespace installer

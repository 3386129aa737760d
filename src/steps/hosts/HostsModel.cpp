#include "steps/hosts/HostsModel.h"

#include <string_view>
#include <utility>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "hosts/HostLists.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/BundleUserDefaults.h"
#include "product/LocalizedText.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

constexpr std::int32_t firstListedVersion = 6;
constexpr std::uint32_t firstVersionWithoutPathsFile = 2019;

std::string instructions(const Bundle& bundle) {
    const std::string productName = installerText(bundle, "product_name");
    return formatted(localizedText(bundle, "select_host_instructions"), {productName, productName});
}

std::vector<std::string> namesIn(FileManager& files, const std::string& folder) {
    Result<std::vector<std::string>> names = files.list(folder);
    return names ? std::move(names).value() : std::vector<std::string>();
}

bool isAdobeFile(const std::string& name, std::string_view purpose) {
    return contains(name, purpose) && contains(name, "Adobe");
}

/// The custom folder that an earlier run remembered.
std::optional<UnknownHostModel> rememberedCustomHost(Platform& platform) {
    const BundleUserDefaults defaults(platform, "com.quarrytone.installer");
    if (const std::optional<std::string> path = defaults.stringForKey("customPath")) {
        return UnknownHostModel(platform, *path);
    }
    if (defaults.objectForKey("customPath64")) return UnknownHostModel(platform, "");
    return std::nullopt;
}

}  // namespace

HostsModel::HostsModel(Platform& platform)
    : mainLabelText_(localizedText(platform.bundle, "select_host")),
      stepIndicatorLabelText_(localizedText(platform.bundle, "host_selection")),
      informativeText_(instructions(platform.bundle)),
      customInstallBrowseButtonText_(
          localizedText(platform.bundle, "custom_install_browse_button")),
      customInstallPathLabelText_(localizedText(platform.bundle, "custom_install_label_path")),
      customInstallButtonText_(localizedText(platform.bundle, "custom_install_button")),
      customInstallCheckBoxText_(localizedText(platform.bundle, "custom_install_panels_checkbox")),
      customInstallHostsExplanationText_(
          localizedText(platform.bundle, "custom_install_host_label")) {
    // The remembered folder is not listed at the start: the custom-install screen offers it.
    static_cast<void>(rememberedCustomHost(platform));
    discoverHosts(platform);
}

void HostsModel::discoverHosts(Platform& platform) {
    const std::string preferences = NSUserPreferencesDirectory(platform).value_or("");
    const std::optional<std::string> support = ApplicationSupportDirectory(platform);
    const std::string adobeFolder = support ? joinPath(*support, "Adobe") : "";
    const std::vector<std::string> preferencesNames = namesIn(platform.files, preferences);

    for (const std::string& name : namesIn(platform.files, adobeFolder)) {
        if (isAdobeFile(name, "Paths")) addHostOfPathsFile(platform, joinPath(adobeFolder, name));
    }
    for (const std::string& name : preferencesNames) {
        if (isAdobeFile(name, "Paths")) addHostOfPathsFile(platform, joinPath(preferences, name));
    }
    for (const std::string& name : preferencesNames) {
        if (isAdobeFile(name, "Settings")) addHostOfSettingsFile(platform, name);
    }
}

void HostsModel::addHostOfPathsFile(Platform& platform, const std::string& path) {
    platform.log.log(formatted("Found path file %@", {path}));
    PhotoshopHostModel host = PhotoshopHostModel::initWithPathsFilePath(platform, path);
    // No Elements release is added. A host that is not installed is, but `foundHosts` leaves it
    // out.
    if (host.isElements() || !host.hostIsAtLeastVersionCS(firstListedVersion)) return;
    hostsArray_.emplace_back(std::move(host));
}

void HostsModel::addHostOfSettingsFile(Platform& platform, const std::string& name) {
    PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(platform, replacingAll(name, " Settings", ""));
    if (host.photoshopVersionFromDisplayName() < firstVersionWithoutPathsFile) return;
    hostsArray_.emplace_back(std::move(host));
}

std::vector<HostModel> HostsModel::foundHosts() const {
    std::optional<std::vector<HostModel>> installed =
        hostsAnsweringYes(hostsArray_, "hostIsInstalled");
    if (!installed) return {};
    return sortedByDisplaySortOrder(*std::move(installed)).value_or(std::vector<HostModel>());
}

std::vector<HostModel> HostsModel::scriptsOrPanelsHosts() const {
    return {};
}

void HostsModel::addHostAtRuntime(HostModel host) {
    hostsArray_.push_back(std::move(host));
}

void HostsModel::removeHostAtRuntime(const HostModel& host) {
    // Copied, since the argument may refer to an entry of this list.
    std::erase_if(hostsArray_,
                  [removed = host](const HostModel& entry) { return entry == removed; });
}

std::optional<std::string> HostsModel::mainLabelText() const {
    return mainLabelText_;
}

std::string HostsModel::stepIndicatorLabelText() const {
    return stepIndicatorLabelText_;
}

PlainOrStyledText HostsModel::informativeText() const {
    return informativeText_;
}

const std::string& HostsModel::customInstallBrowseButtonText() const {
    return customInstallBrowseButtonText_;
}

const std::string& HostsModel::customInstallPathLabelText() const {
    return customInstallPathLabelText_;
}

const std::string& HostsModel::customInstallButtonText() const {
    return customInstallButtonText_;
}

const std::string& HostsModel::customInstallCheckBoxText() const {
    return customInstallCheckBoxText_;
}

const std::string& HostsModel::customInstallHostsExplanationText() const {
    return customInstallHostsExplanationText_;
}

}  // namespace installer

#include "hosts/HostDiscovery.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/BundleUserDefaults.h"
#include "product/PlugInFilesModel.h"
#include "product/ProductFacts.h"

namespace installer {

namespace {

constexpr std::int32_t firstListedVersion = 6;
constexpr std::uint32_t firstVersionWithoutPathsFile = 2019;

std::vector<std::string> namesIn(FileManager& files, const std::string& folder) {
    Result<std::vector<std::string>> names = files.list(folder);
    return names ? std::move(names).value() : std::vector<std::string>();
}

bool isAdobeFile(const std::string& name, std::string_view purpose) {
    return contains(name, purpose) && contains(name, "Adobe");
}

std::optional<UnknownHostModel> rememberedCustomHost(Platform& platform) {
    const BundleUserDefaults defaults(platform, settingsDomain);
    if (const std::optional<std::string> path = defaults.stringForKey("customPath")) {
        return UnknownHostModel(platform, *path);
    }
    if (defaults.objectForKey("customPath64")) return UnknownHostModel(platform, "");
    return std::nullopt;
}

}  // namespace

HostDiscovery::HostDiscovery(Platform& platform) : platform_(platform) {
    static_cast<void>(rememberedCustomHost(platform));
}

std::vector<HostModel> HostDiscovery::discoverHosts() {
    hosts_.clear();
    unlisted_.clear();
    const std::string preferences = NSUserPreferencesDirectory(platform_).value_or("");
    const std::optional<std::string> support = ApplicationSupportDirectory(platform_);
    const std::string adobeFolder = support ? joinPath(*support, "Adobe") : "";
    const std::vector<std::string> preferencesNames = namesIn(platform_.files, preferences);

    for (const std::string& name : namesIn(platform_.files, adobeFolder)) {
        if (isAdobeFile(name, "Paths")) addHostOfPathsFile(joinPath(adobeFolder, name));
    }
    for (const std::string& name : preferencesNames) {
        if (isAdobeFile(name, "Paths")) addHostOfPathsFile(joinPath(preferences, name));
    }
    for (const std::string& name : preferencesNames) {
        if (isAdobeFile(name, "Settings")) addHostOfSettingsFile(name);
    }
    return std::move(hosts_);
}

void HostDiscovery::addHostOfPathsFile(const std::string& path) {
    platform_.log.log(formatted("Found path file %@", {path}));
    PhotoshopHostModel host = PhotoshopHostModel::initWithPathsFilePath(platform_, path);
    // No Elements release is listed, old or new; an uninstalled host is, and is not offered.
    if (host.isElements()) {
        unlisted_.push_back({host.hostName(), UnlistedHost::Reason::elements});
        return;
    }
    if (!host.hostIsAtLeastVersionCS(firstListedVersion)) {
        unlisted_.push_back({host.hostName(), UnlistedHost::Reason::unknownRelease});
        return;
    }
    hosts_.emplace_back(std::move(host));
}

void HostDiscovery::addHostOfSettingsFile(const std::string& name) {
    PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(platform_, replacingAll(name, " Settings", ""));
    if (host.photoshopVersionFromDisplayName() < firstVersionWithoutPathsFile) return;
    hosts_.emplace_back(std::move(host));
}

}  // namespace installer

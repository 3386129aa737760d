#include "hosts/HostDiscovery.h"

#include <algorithm>
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
    notOffered_.clear();
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
    noteNotOffered();
    return std::move(hosts_);
}

void HostDiscovery::addHostOfPathsFile(const std::string& path) {
    platform_.log.log(formatted("Found path file %@", {path}));
    PhotoshopHostModel host = PhotoshopHostModel::initWithPathsFilePath(platform_, path);
    // No Elements release is listed, old or new; an uninstalled host is, and is not offered.
    if (host.isElements()) {
        addNotOffered(host.hostName(), NotOfferedHost::Reason::elements);
        return;
    }
    if (!host.hostIsAtLeastVersionCS(firstListedVersion)) {
        addNotOffered(host.hostName(), NotOfferedHost::Reason::tooOld);
        return;
    }
    host.setSourceFile(path);
    hosts_.emplace_back(std::move(host));
}

void HostDiscovery::addHostOfSettingsFile(const std::string& name) {
    PhotoshopHostModel host =
        PhotoshopHostModel::initWithHostName(platform_, replacingAll(name, " Settings", ""));
    if (host.photoshopVersionFromDisplayName() < firstVersionWithoutPathsFile) return;
    host.setSourceFile(name);
    hosts_.emplace_back(std::move(host));
}

void HostDiscovery::noteNotOffered() {
    for (const HostModel& host : hosts_) {
        const auto* photoshop = host.as<PhotoshopHostModel>();
        if (photoshop == nullptr || photoshop->hostIsInstalled()) continue;
        addNotOffered(photoshop->hostName(), photoshop->appPath().empty()
                                                 ? NotOfferedHost::Reason::unreadable
                                                 : NotOfferedHost::Reason::folderMissing);
    }
    // Another file of the same release may have led to it.
    std::erase_if(notOffered_, [this](const NotOfferedHost& other) {
        return std::ranges::any_of(hosts_, [&](const HostModel& host) {
            return host.hostName() == other.name && host.booleanNamed("hostIsInstalled") == true;
        });
    });
    for (const NotOfferedHost& host : notOffered_) {
        platform_.log.log(formatted("Not offered: %@: %@", {host.name, description(host.reason)}));
    }
}

void HostDiscovery::addNotOffered(const std::string& name, NotOfferedHost::Reason reason) {
    const auto hasName = [&](const NotOfferedHost& host) { return host.name == name; };
    if (std::ranges::none_of(notOffered_, hasName)) notOffered_.push_back({name, reason});
}

const char* description(NotOfferedHost::Reason reason) {
    switch (reason) {
        case NotOfferedHost::Reason::tooOld:
            return "it is too old";
        case NotOfferedHost::Reason::elements:
            return "Photoshop Elements is not supported";
        case NotOfferedHost::Reason::folderMissing:
            return "there is no application in its folder";
        case NotOfferedHost::Reason::unreadable:
            return "its paths file cannot be read";
    }
    return "";
}

}  // namespace installer

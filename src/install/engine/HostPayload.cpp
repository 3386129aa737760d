#include "install/engine/HostPayload.h"

#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"
#include "install/engine/FileInstaller.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"

namespace installer {

std::vector<HostPayload::Mirrored> HostPayload::foldersFor(Platform& platform,
                                                           const HostModel& host) {
    const PlugInFilesModel paths(platform);
    const std::string payload = paths.payloadFolder();
    if (const auto* photoshop = host.as<PhotoshopHostModel>()) {
        return {{joinPath(payload, "PHOTOSHOP"), photoshop->appPath()},
                {joinPath(payload, "PHOTOSHOP_PLUGINS"), photoshop->plugInPath()}};
    }
    if (host.as<LightRoomHostModel>() != nullptr) {
        return {{joinPath(payload, "LIGHTROOM"), paths.lightRoomSupportPath()}};
    }
    if (const auto* custom = host.as<UnknownHostModel>()) {
        return {{joinPath(payload, "PHOTOSHOP_PLUGINS"), custom->plugInPath()}};
    }
    return {};
}

std::vector<HostPayload::Item> HostPayload::items(Platform& platform, const Mirrored& folder) {
    std::vector<Item> items;
    // With an empty path the files would go to the root of the disk.
    if (folder.to.empty()) return items;
    platform.files.walk(folder.source, WalkDepth::everything, [&](const WalkEntry& entry) {
        if (entry.isPackage || entry.type == FileType::regular) {
            items.push_back({entry.path, entry.isPackage});
        }
    });
    return items;
}

std::vector<std::string> HostPayload::sources(Platform& platform, const HostModel& host) {
    std::vector<std::string> sources;
    for (const Mirrored& folder : foldersFor(platform, host)) {
        for (Item& item : items(platform, folder)) sources.push_back(std::move(item.path));
    }
    return sources;
}

void HostPayload::installFiles(const HostModel& host) {
    for (const Mirrored& folder : foldersFor(platform_, host)) {
        copyHostFilesFrom(folder.source, folder.to);
    }
}

void HostPayload::copyHostFilesFrom(const std::string& source, const std::string& to) {
    for (const Item& item : items(platform_, {source, to})) {
        const std::string destination = replacingAll(item.path, source, to);
        installer_.installSourceFiles({item.path}, parentPath(withSingleSeparators(destination)),
                                      item.isPackage, true);
    }
}

}  // namespace installer

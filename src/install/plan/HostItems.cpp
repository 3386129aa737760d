#include "install/plan/HostItems.h"

#include <iterator>
#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "install/plan/PayloadTrees.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

std::vector<HostFolder> foldersFor(Platform& platform, const HostModel& host) {
    const PlugInFilesModel paths(platform);
    const std::string payload = paths.payloadFolder();
    const std::string plugIns = joinPath(payload, "PHOTOSHOP_PLUGINS");
    if (const auto* photoshop = host.as<PhotoshopHostModel>()) {
        return {
            {joinPath(payload, "PHOTOSHOP"), photoshop->appPath(), InstallRule::hostApplication},
            {plugIns, photoshop->plugInPath(), InstallRule::hostPlugIns}};
    }
    if (host.as<LightRoomHostModel>() != nullptr) {
        return {
            {joinPath(payload, "LIGHTROOM"), paths.lightRoomSupportPath(), InstallRule::lightroom}};
    }
    if (const auto* custom = host.as<UnknownHostModel>()) {
        return {{plugIns, custom->plugInPath(), InstallRule::hostPlugIns}};
    }
    return {};
}

}  // namespace

void append(std::vector<PlannedItem>& items, std::vector<PlannedItem> more) {
    if (items.empty()) {
        items = std::move(more);
    } else {
        std::move(more.begin(), more.end(), std::back_inserter(items));
    }
}

std::vector<PlannedItem> hostItems(Platform& platform, PayloadTrees& trees, const HostModel& host,
                                   std::size_t index) {
    std::vector<PlannedItem> items;
    for (const HostFolder& folder : foldersFor(platform, host)) {
        append(items, itemsOf(trees, folder, index));
    }
    return items;
}

std::vector<PlannedItem> itemsOf(PayloadTrees& trees, const HostFolder& folder,
                                 std::optional<std::size_t> host) {
    std::vector<PlannedItem> items;
    // With an empty path the files would go to the root of the disk.
    if (folder.to.empty()) return items;
    const auto* entries = trees.entriesOf(folder.source);
    if (entries == nullptr) return items;
    visitVisible(*entries, folder.source, [&](const std::string& path, const TreeEntry& entry) {
        if (!entry.isPackage && entry.type != FileType::regular) return;
        // A plain replacement of text: a path that contains the folder's path again gets the
        // destination there too.
        const std::string target =
            withSingleSeparators(replacingAll(path, folder.source, folder.to));
        items.push_back({.source = path,
                         .destination = joinPath(parentPath(target), entry.name),
                         .rule = folder.rule,
                         .host = host,
                         .isPackage = entry.isPackage,
                         .bytes = bytesOf(entry)});
    });
    return items;
}

}  // namespace installer

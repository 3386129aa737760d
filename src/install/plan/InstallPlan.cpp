#include "install/plan/InstallPlan.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "install/plan/HostItems.h"
#include "install/plan/LeftOutEntries.h"
#include "install/plan/MirrorItems.h"
#include "install/plan/PayloadTrees.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

std::span<const PlannedItem> itemsWithHost(const std::vector<PlannedItem>& items,
                                           std::optional<std::size_t> host) {
    const auto isOfHost = [host](const PlannedItem& item) { return item.host == host; };
    const auto first = std::find_if(items.begin(), items.end(), isOfHost);
    return {first, std::find_if_not(first, items.end(), isOfHost)};
}

/// A paths file, a settings file or a payload may name any folder of the machine.
void refuseItemsInSystemFolders(const SearchPaths& searchPaths, InstallPlan& plan) {
    const auto isAllowed = [&](const PlannedItem& item) {
        return !searchPaths.isProtected(item.destination);
    };
    // There is hardly ever one, and parting the items takes as much memory again as they do.
    const auto first = std::ranges::find_if_not(plan.items, isAllowed);
    const auto firstRefused = std::stable_partition(first, plan.items.end(), isAllowed);
    plan.refused.assign(std::make_move_iterator(firstRefused),
                        std::make_move_iterator(plan.items.end()));
    plan.items.erase(firstRefused, plan.items.end());
}

}  // namespace

std::span<const PlannedItem> InstallPlan::mirrorItems() const {
    return itemsWithHost(items, std::nullopt);
}

std::span<const PlannedItem> InstallPlan::itemsOf(std::size_t host) const {
    return itemsWithHost(items, host);
}

std::uint64_t InstallPlan::totalBytes() const {
    std::uint64_t bytes = 0;
    for (const PlannedItem& item : items) bytes += item.bytes;
    return bytes;
}

InstallPlan makeInstallPlan(Platform& platform, const std::vector<HostModel>& hosts,
                            ProgressSink* progress) {
    PayloadTrees trees(platform.files, progress);
    InstallPlan plan;
    plan.payloadFolder = PlugInFilesModel(platform).payloadFolder();
    plan.hasPayload = platform.files.exists(plan.payloadFolder);
    plan.hosts = hosts;
    if (plan.hasPayload) plan.leftOut = leftOutEntries(platform, trees);
    plan.items = mirrorItems(platform, trees);
    for (std::size_t host = 0; host < hosts.size(); ++host) {
        append(plan.items, hostItems(platform, trees, hosts[host], host));
    }
    refuseItemsInSystemFolders(platform.searchPaths, plan);
    return plan;
}

std::string_view description(InstallRule rule) {
    switch (rule) {
        case InstallRule::mirrorPackage:
            return "A package of the disk mirror goes to the same place on the target disk.";
        case InstallRule::productFolder:
            return "What lies in a product's folder of the disk mirror goes to the same folder on "
                   "the target disk.";
        case InstallRule::hostApplication:
            return "Files for a host application go into its folder.";
        case InstallRule::hostPlugIns:
            return "The plug-in goes into the plug-in folder of a host, or into a custom folder.";
        case InstallRule::lightroom:
            return "Files for Lightroom go into the user's folder for Lightroom.";
    }
    return "";
}

std::string_view description(LeftOutReason reason) {
    switch (reason) {
        case LeftOutReason::hidden:
            return "An entry whose name begins with a dot is not installed.";
        case LeftOutReason::unknownEntry:
            return "Only HD, PHOTOSHOP, PHOTOSHOP_PLUGINS and LIGHTROOM are installed from.";
        case LeftOutReason::outsideProducts:
            return "A plain file of the disk mirror is installed only from a product's folder.";
        case LeftOutReason::linkOrSpecialFile:
            return "A link or special file is installed only as a part of a larger item.";
        case LeftOutReason::unreadableFolder:
            return "The folder cannot be read.";
    }
    return "";
}

}  // namespace installer

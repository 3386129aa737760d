#include "install/plan/PlannedWrites.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/values/Paths.h"
#include "install/plan/InstallPlan.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

bool liesBelow(std::string_view path, std::string_view folder) {
    return !folder.empty() && path.size() > folder.size() && path.starts_with(folder) &&
           path[folder.size()] == '/';
}

/// The folders that are worth naming as a whole: the maker's, and those of the hosts.
std::vector<std::string> wholeFolders(const PlugInFilesModel& paths, const InstallPlan& plan) {
    std::vector<std::string> folders = {paths.companyAppSupportPath()};
    for (const HostModel& host : plan.hosts) {
        const auto* photoshop = host.as<PhotoshopHostModel>();
        if (photoshop != nullptr) folders.push_back(withSingleSeparators(photoshop->appPath()));
        folders.push_back(withSingleSeparators(host.plugInPath()));
    }
    return folders;
}

}  // namespace

WriteGrant plannedWrites(Platform& platform, const InstallPlan& plan) {
    const PlugInFilesModel paths(platform);
    const std::vector<std::string> whole = wholeFolders(paths, plan);
    WriteGrant grant;
    const auto add = [&](const std::string& destination) {
        const auto folder = std::ranges::find_if(
            whole, [&](const std::string& path) { return liesBelow(destination, path); });
        grant.addFolder(folder == whole.end() ? parentPath(destination) : *folder);
        grant.addDestination(destination);
    };
    add(paths.installerLogPath());
    add(paths.externalEditorsPath());
    add(paths.identifierPath());
    for (const PlannedItem& item : plan.items) add(item.destination);
    return grant;
}

}  // namespace installer

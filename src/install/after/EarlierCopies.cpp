#include "install/after/EarlierCopies.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/WriteGrant.h"
#include "hosts/HostModel.h"
#include "install/rights/PrivilegedCommands.h"
#include "ports/EventLoop.h"
#include "ports/FileManager.h"
#include "ports/FileQuery.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

/// Returns the number of results.
std::size_t gathered(FileQuery& query, EventLoop& eventLoop) {
    query.start();
    eventLoop.runUntilNow();
    while (query.isGathering()) eventLoop.runUntilNow();
    const std::size_t count = query.resultCount();
    query.stop();
    return count;
}

/// Other programs write the files that name the plug-in folders. Such a file must not make this
/// search, and then delete from, a whole disk.
bool canSearch(Platform& platform, const std::string& folder) {
    if (!folder.starts_with('/') || folder == "/") return false;
    if (folder == withSingleSeparators(platform.searchPaths.onTargetVolume("/"))) return false;
    return std::ranges::none_of(split(folder, '/'), [](const std::string& component) {
        return component == "." || component == "..";
    });
}

/// In the order in which the platform lists the folders. A name in both is searched twice.
std::vector<std::string> searchedNames(Platform& platform) {
    const PlugInFilesModel paths(platform);
    const auto plugIns = platform.files.list(paths.getPlugInDirInBundle());
    // Without plug-ins the auto-layer items are not searched either, on purpose: an installer
    // without plug-ins removes nothing.
    if (!plugIns) return {};
    std::vector<std::string> names = plugIns.value();
    const auto autoLayerItems = platform.files.list(paths.getAutoLayerDirInBundle());
    if (autoLayerItems) {
        names.insert(names.end(), autoLayerItems.value().begin(), autoLayerItems.value().end());
    }
    return names;
}

}  // namespace

void EarlierCopies::unInstallForHost(const HostModel& host) {
    const std::string folder = withSingleSeparators(host.plugInPath());
    if (!canSearch(platform_, folder)) return;
    const auto query = platform_.fileQueries.create();
    query->setSearchScopes({folder});
    for (const std::string& name : searchedNames(platform_)) {
        if (removeCopiesNamed(name, *query) == Outcome::refused) return;
    }
}

EarlierCopies::Outcome EarlierCopies::removeCopiesNamed(const std::string& name, FileQuery& query) {
    query.setNameLike(name);
    const std::size_t count = gathered(query, platform_.eventLoop);
    for (std::size_t index = 0; index < count; ++index) {
        const FoundFile found = query.result(index);
        // The query may have found more: a name can hold what is a wildcard to it.
        if (found.name == name &&
            commands_.removeItem(found.path) == PrivilegedCommands::Outcome::refused) {
            return Outcome::refused;
        }
        platform_.log.log(formatted("found %@ at %@", {found.name, found.path}));
    }
    return Outcome::finished;
}

void addEarlierCopies(Platform& platform, const HostModel& host, WriteGrant& grant) {
    const std::string folder = withSingleSeparators(host.plugInPath());
    if (!canSearch(platform, folder)) return;
    grant.addFolder(folder);
    for (const std::string& name : searchedNames(platform)) grant.addRemovableName(name);
}

}  // namespace installer

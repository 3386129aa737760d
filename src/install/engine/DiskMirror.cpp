#include "install/engine/DiskMirror.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "foundation/text/Format.h"
#include "install/engine/FileInstaller.h"
#include "install/plan/InstallPlan.h"
#include "install/plan/MirrorItems.h"
#include "install/plan/PayloadTrees.h"
#include "ports/ApplicationDatabase.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"

namespace installer {

namespace {

/// How many items at the front belong to one product folder: they are installed in one operation.
std::size_t lengthOfProductFolder(std::span<const PlannedItem> items) {
    const std::string folder = items.front().destinationFolder();
    const auto end = std::find_if(items.begin(), items.end(), [&](const PlannedItem& item) {
        return item.rule != InstallRule::productFolder || item.destinationFolder() != folder;
    });
    return static_cast<std::size_t>(end - items.begin());
}

}  // namespace

void DiskMirror::installFiles() {
    PayloadTrees trees(platform_.files);
    installFiles(mirrorItems(platform_, trees));
}

void DiskMirror::installFiles(std::span<const PlannedItem> items) {
    while (!items.empty()) {
        std::size_t count = 1;
        if (items.front().rule == InstallRule::mirrorPackage) {
            installPackage(items.front());
        } else {
            count = lengthOfProductFolder(items);
            installer_.install(items.first(count));
        }
        items = items.subspan(count);
    }
    installer_.confirm();
}

void DiskMirror::installPackage(const PlannedItem& package) {
    const std::string& destination = package.destination;
    installer_.install({&package, 1});
    registerApplication(destination);
    commands_.removeQuarantine(destination);
}

void DiskMirror::registerApplications(std::span<const PlannedItem> items) {
    for (const PlannedItem& item : items) {
        if (item.rule == InstallRule::mirrorPackage) registerApplication(item.destination);
    }
}

void DiskMirror::registerApplication(const std::string& path) {
    if (const auto status = platform_.applications.registerApplication(path)) {
        platform_.log.log(
            formatted("LSRegisterURL returned %@ for %@", {std::to_string(status), path}));
    }
}

}  // namespace installer

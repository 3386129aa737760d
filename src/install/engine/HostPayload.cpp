#include "install/engine/HostPayload.h"

#include <optional>

#include "install/engine/FileInstaller.h"
#include "install/plan/HostItems.h"
#include "install/plan/InstallPlan.h"
#include "install/plan/PayloadTrees.h"
#include "ports/Platform.h"

namespace installer {

void HostPayload::installFiles(std::span<const PlannedItem> items) {
    for (const PlannedItem& item : items) installer_.install({&item, 1});
    installer_.confirm();
}

void HostPayload::installFiles(const HostModel& host) {
    PayloadTrees trees(platform_.files);
    installFiles(hostItems(platform_, trees, host, 0));
}

void HostPayload::copyHostFilesFrom(const std::string& source, const std::string& to) {
    PayloadTrees trees(platform_.files);
    installFiles(itemsOf(trees, {.source = source, .to = to}, std::nullopt));
}

}  // namespace installer

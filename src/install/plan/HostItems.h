#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "install/plan/InstallPlan.h"

namespace installer {

class PayloadTrees;

/// What there is to install for a host of that kind; for most kinds there is nothing. `index` is
/// the host's place in the plan.
[[nodiscard]] std::vector<PlannedItem> hostItems(Platform& platform, PayloadTrees& trees,
                                                 const HostModel& host, std::size_t index);

/// A folder of files for hosts and the folder that it is mirrored into.
struct HostFolder {
    std::string source;
    std::string to;
    InstallRule rule = InstallRule::hostApplication;
};

/// Adds the items at the end. Does not touch them where there are none yet: there can be 100,000.
void append(std::vector<PlannedItem>& items, std::vector<PlannedItem> more);

/// The packages and regular files anywhere in the folder, one by one. Hidden entries, links and
/// special files are left out. Nothing when there is no folder to go to.
[[nodiscard]] std::vector<PlannedItem> itemsOf(PayloadTrees& trees, const HostFolder& folder,
                                               std::optional<std::size_t> host);

}  // namespace installer

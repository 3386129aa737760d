#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "hosts/HostModel.h"

namespace installer {

// Filtering and sorting of lists that mix kinds of hosts. A property that one of the hosts does not
// answer is an error of the whole operation.

/// The hosts that answer the property with yes, in list order; nullopt if one does not answer it.
[[nodiscard]] std::optional<std::vector<HostModel>> hostsAnsweringYes(
    const std::vector<HostModel>& hosts, std::string_view property);

/// The hosts by their display sort order, ascending; those of equal order stay in list order.
/// nullopt if one has no display sort order.
[[nodiscard]] std::optional<std::vector<HostModel>> sortedByDisplaySortOrder(
    std::vector<HostModel> hosts);

/// The hosts that are offered: the installed ones in display order. Empty if one of the hosts does
/// not answer whether it is installed, or one of the installed ones has no display order.
[[nodiscard]] std::vector<HostModel> foundHosts(const std::vector<HostModel>& hosts);

}  // namespace installer

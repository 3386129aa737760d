#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "hosts/HostModel.h"

namespace installer {

// Filtering and sorting of lists that mix kinds of hosts. A property that one of the hosts does not
// answer is an error of the whole operation, which then gives none; what that means is the
// caller's rule.

/// The hosts that answer the property with yes, in list order.
[[nodiscard]] std::optional<std::vector<HostModel>> hostsAnsweringYes(
    const std::vector<HostModel>& hosts, std::string_view property);

/// The hosts that the user has selected, in list order; an empty list when one of them cannot be
/// asked.
[[nodiscard]] std::vector<HostModel> selectedAmong(const std::vector<HostModel>& hosts);

/// The hosts by their display sort order, ascending; those of equal order stay in list order.
[[nodiscard]] std::optional<std::vector<HostModel>> sortedByDisplaySortOrder(
    std::vector<HostModel> hosts);

}  // namespace installer

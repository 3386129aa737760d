#include "hosts/HostLists.h"

#include <algorithm>
#include <utility>

namespace installer {

std::optional<std::vector<HostModel>> hostsAnsweringYes(const std::vector<HostModel>& hosts,
                                                        std::string_view property) {
    std::vector<HostModel> answering;
    for (const HostModel& host : hosts) {
        const std::optional<bool> answer = host.booleanNamed(property);
        if (!answer) return std::nullopt;
        if (*answer) answering.push_back(host);
    }
    return answering;
}

std::optional<std::vector<HostModel>> sortedByDisplaySortOrder(std::vector<HostModel> hosts) {
    const bool allAnswer = std::all_of(hosts.begin(), hosts.end(), [](const HostModel& host) {
        return host.displaySortOrder().has_value();
    });
    if (!allAnswer) return std::nullopt;
    std::stable_sort(hosts.begin(), hosts.end(), [](const HostModel& left, const HostModel& right) {
        return left.displaySortOrder() < right.displaySortOrder();
    });
    return hosts;
}

std::vector<HostModel> foundHosts(const std::vector<HostModel>& hosts) {
    std::optional<std::vector<HostModel>> installed = hostsAnsweringYes(hosts, "hostIsInstalled");
    if (!installed) return {};
    return sortedByDisplaySortOrder(*std::move(installed)).value_or(std::vector<HostModel>());
}

}  // namespace installer

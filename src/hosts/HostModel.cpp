#include "hosts/HostModel.h"

namespace installer {

namespace {

// A kind answers a property when it has the operation of that name.
template <class Kind>
std::optional<bool> answer(const Kind& host, std::string_view property) {
    if constexpr (requires { host.hostIsInstalled(); }) {
        if (property == "hostIsInstalled") return host.hostIsInstalled();
    }
    if constexpr (requires { host.hostIsSelected(); }) {
        if (property == "hostIsSelected") return host.hostIsSelected();
    }
    if constexpr (requires { host.shouldInstallScripts(); }) {
        if (property == "shouldInstallScripts") return host.shouldInstallScripts();
    }
    if constexpr (requires { host.shouldInstallPanels(); }) {
        if (property == "shouldInstallPanels") return host.shouldInstallPanels();
    }
    if constexpr (requires { host.shouldInstallPlugIns(); }) {
        if (property == "shouldInstallPlugIns") return host.shouldInstallPlugIns();
    }
    if constexpr (requires { host.hostIs64Bit(); }) {
        if (property == "hostIs64Bit") return host.hostIs64Bit();
    }
    return std::nullopt;
}

}  // namespace

std::optional<bool> HostModel::booleanNamed(std::string_view property) const {
    return std::visit([&](const auto& host) { return answer(host, property); }, *host_);
}

void HostModel::setHostIsSelected(bool selected) const {
    std::visit(
        [selected](auto& host) {
            if constexpr (requires { host.setHostIsSelected(selected); }) {
                host.setHostIsSelected(selected);
            }
        },
        *host_);
}

std::optional<std::uint64_t> HostModel::displaySortOrder() const {
    return std::visit(
        [](const auto& host) -> std::optional<std::uint64_t> {
            if constexpr (requires { host.displaySortOrder(); }) return host.displaySortOrder();
            return std::nullopt;
        },
        *host_);
}

std::string HostModel::hostName() const {
    return std::visit([](const auto& host) -> std::string { return host.hostName(); }, *host_);
}

std::string HostModel::plugInPath() const {
    return std::visit([](const auto& host) -> std::string { return host.plugInPath(); }, *host_);
}

}  // namespace installer

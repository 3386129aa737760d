#include "app/HostRows.h"

#include <string>

#include "hosts/HostModel.h"
#include "platform/Workspace.h"

namespace installer {

namespace {

template <class Kind>
std::string folderOf(const Kind& host) {
    if constexpr (requires { host.appPath(); }) {
        if (const std::string path = host.appPath(); !path.empty()) return path;
    }
    return host.plugInPath();
}

/// Calls `action` with the host as what it is, when it is of the kind.
template <class Kind, class Action>
void ifKind(const HostModel& host, const Action& action) {
    if (Kind* kind = host.as<Kind>()) action(*kind);
}

template <class Action>
void asItsKind(const HostModel& host, const Action& action) {
    ifKind<PhotoshopHostModel>(host, action);
    ifKind<LightRoomHostModel>(host, action);
    ifKind<ApertureHostModel>(host, action);
    ifKind<FireworksHostModel>(host, action);
    ifKind<UnknownHostModel>(host, action);
}

ListRow rowOf(const HostModel& host, Workspace& workspace) {
    ListRow row{.title = host.hostName(),
                .checked = host.booleanNamed("hostIsSelected").value_or(false)};
    asItsKind(host, [&](const auto& kind) { row.detail = folderOf(kind); });
    if (!row.detail.empty()) row.icon = workspace.iconOfFile(row.detail);
    return row;
}

}  // namespace

std::vector<ListRow> hostRows(const std::vector<HostModel>& hosts, Workspace& workspace) {
    std::vector<ListRow> rows;
    rows.reserve(hosts.size());
    for (const HostModel& host : hosts) rows.push_back(rowOf(host, workspace));
    return rows;
}

void setHostIsSelected(const HostModel& host, bool selected) {
    asItsKind(host, [selected](auto& kind) {
        if constexpr (requires { kind.setHostIsSelected(selected); }) {
            kind.setHostIsSelected(selected);
        }
    });
}

}  // namespace installer

#include "app/HostRows.h"

#include <string>

#include "hosts/HostModel.h"
#include "ports/window/Workspace.h"

namespace installer {

namespace {

template <class Kind>
std::string folderOf(const Kind& host) {
    if constexpr (requires { host.appPath(); }) {
        if (const std::string& path = host.appPath(); !path.empty()) return path;
    }
    return host.plugInPath();
}

/// The host's folder if the host is of one of the kinds, else empty.
template <class... Kinds>
std::string folderOfHost(const HostModel& host) {
    std::string folder;
    const auto tryKind = [&folder](const auto* kind) {
        if (kind != nullptr) folder = folderOf(*kind);
    };
    (tryKind(host.as<Kinds>()), ...);
    return folder;
}

}  // namespace

std::string hostFolder(const HostModel& host) {
    return folderOfHost<PhotoshopHostModel, LightRoomHostModel, ApertureHostModel,
                        FireworksHostModel, UnknownHostModel>(host);
}

namespace {

ListRow rowOf(const HostModel& host, Workspace& workspace) {
    ListRow row{.title = host.hostName(),
                .detail = hostFolder(host),
                .checked = host.booleanNamed("hostIsSelected").value_or(false)};
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

}  // namespace installer

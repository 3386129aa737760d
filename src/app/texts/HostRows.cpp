#include "app/texts/HostRows.h"

#include <algorithm>
#include <cstddef>

#include "app/texts/HostRefusal.h"
#include "foundation/text/Format.h"
#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/LocalizedText.h"
#include "steps/hosts/RefusedFolder.h"

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

/// The name of the file through which the host was found; empty if there is none.
std::string sourceFile(const HostModel& host) {
    const auto* photoshop = host.as<PhotoshopHostModel>();
    return photoshop == nullptr ? "" : lastPathComponent(photoshop->sourceFile());
}

ListRow rowOf(const HostModel& host, Workspace& workspace) {
    ListRow row{.title = host.hostName(),
                .detail = hostFolder(host),
                .checked = host.booleanNamed("hostIsSelected").value_or(false)};
    if (!row.detail.empty()) row.icon = workspace.iconOfFile(row.detail);
    return row;
}

}  // namespace

std::vector<ListRow> hostRows(const std::vector<HostModel>& hosts, WindowPlatform& platform) {
    std::vector<ListRow> rows;
    rows.reserve(hosts.size());
    for (const HostModel& host : hosts) rows.push_back(rowOf(host, platform.workspace));
    const std::vector<ListRow> plain = rows;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const auto isSame = [&](const ListRow& other) {
            return other.title == plain[row].title && other.detail == plain[row].detail;
        };
        const std::string file = sourceFile(hosts[row]);
        if (file.empty() || std::ranges::count_if(plain, isSame) < 2) continue;
        rows[row].detail = formatted(localizedText(platform.bundle, "host_from_file_fmt"),
                                     {plain[row].detail, file});
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        rows[row].detail = refusedFolderText(platform.bundle, linkRefusalOf(platform, hosts[row]),
                                             rows[row].detail);
    }
    return rows;
}

}  // namespace installer

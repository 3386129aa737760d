#include "install/after/ExternalEditorList.h"

#include <cstdint>

#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"
#include "install/engine/DestinationFolders.h"
#include "install/run/InstallRun.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "product/PlugInFilesModel.h"
#include "product/ProductFacts.h"

namespace installer {

namespace {

constexpr const char* photoshopKind = "9";
constexpr const char* siblingKind = "4";

/// One row. Nothing is quoted, because Prismor X reads the list without quotes.
std::string row(const std::string& path, const std::string& name, const std::string& kind) {
    return path + "," + name + "," + kind + ",2,1003,100,ORIGINAL, \n";
}

/// The host of the greatest version, the first one of several; a version of 0 is no candidate.
const PhotoshopHostModel* newestPhotoshop(const std::vector<HostModel>& hosts) {
    const PhotoshopHostModel* newest = nullptr;
    std::uint32_t newestVersion = 0;
    for (const HostModel& host : hosts) {
        const auto* photoshop = host.as<PhotoshopHostModel>();
        if (photoshop == nullptr) continue;
        const std::uint32_t version = photoshop->photoshopVersionFromDisplayName();
        if (version <= newestVersion) continue;
        newest = photoshop;
        newestVersion = version;
    }
    return newest;
}

std::string photoshopRow(const Platform& platform, const std::vector<HostModel>& hosts) {
    const PhotoshopHostModel* host = newestPhotoshop(hosts);
    if (host == nullptr) return "";
    const std::string application =
        joinPath(host->appPath(), lastPathComponent(host->appPath()) + ".app");
    return row(platform.searchPaths.asSeenOnTargetVolume(application), host->hostName(),
               photoshopKind);
}

std::string siblingRow(const Platform& platform, const std::string& path, const std::string& name) {
    if (!platform.files.exists(platform.searchPaths.onTargetVolume(path))) return "";
    return row(path, name, siblingKind);
}

}  // namespace

std::string externalEditorRows(Platform& platform, const std::vector<HostModel>& foundHosts) {
    std::string rows = photoshopRow(platform, foundHosts);
    for (const auto& [name, application] : siblingProducts) {
        rows += siblingRow(platform, application, name);
    }
    return rows;
}

void ExternalEditorList::configurePrismorExternalEditors(const std::vector<HostModel>& foundHosts) {
    FileManager& files = platform_.files;
    const std::string folder =
        PlugInFilesModel(platform_).appSupportPathForProduct(externalEditorsProduct);
    const std::string file = joinPath(folder, "ExternalEditors.csv");
    // Rows that the user has added are not kept. A file that stays is replaced below.
    if (files.exists(file)) static_cast<void>(files.remove(file));
    folders_.ensureDirExists(folder);
    if (run_.authDenied) return;

    const std::string rows = externalEditorRows(platform_, foundHosts);
    if (rows.empty()) return;
    static_cast<void>(files.createFile(file, rows));
    run_.installedPaths.push_back(file);
}

}  // namespace installer

#include "install/engine/DiskMirror.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "install/engine/FileInstaller.h"
#include "ports/ApplicationDatabase.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "ports/SystemLog.h"
#include "product/LocalizedText.h"
#include "product/PlugInFilesModel.h"

namespace installer {

DiskMirror::DiskMirror(Platform& platform, PrivilegedCommands& commands, FileInstaller& installer)
    : platform_(platform), commands_(commands), installer_(installer), folder_(folder(platform)) {}

std::string DiskMirror::folder(Platform& platform) {
    return joinPath(PlugInFilesModel(platform).payloadFolder(), "HD");
}

std::string DiskMirror::companyFolder(Platform& platform) {
    return joinPath(joinPath(folder(platform), "Library/Application Support"),
                    folderName(platform.bundle, "company_name"));
}

std::vector<std::string> DiskMirror::packages(Platform& platform) {
    std::vector<std::string> packages;
    platform.files.walk(folder(platform), WalkDepth::everything, [&](const WalkEntry& entry) {
        if (entry.isPackage) packages.push_back(entry.path);
    });
    return packages;
}

std::vector<DiskMirror::ProductFolder> DiskMirror::productFolders(Platform& platform) {
    std::vector<ProductFolder> folders;
    FileManager& files = platform.files;
    files.walk(companyFolder(platform), WalkDepth::entries, [&](const WalkEntry& folder) {
        if (folder.type != FileType::folder || folder.isPackage) return;
        std::vector<std::string> items;
        files.walk(folder.path, WalkDepth::entries, [&](const WalkEntry& entry) {
            if (!entry.isPackage) items.push_back(entry.path);
        });
        if (!items.empty()) folders.push_back({folder.path, std::move(items)});
    });
    return folders;
}

std::vector<std::string> DiskMirror::sources(Platform& platform) {
    std::vector<std::string> sources = packages(platform);
    for (ProductFolder& folder : productFolders(platform)) {
        std::move(folder.items.begin(), folder.items.end(), std::back_inserter(sources));
    }
    return sources;
}

void DiskMirror::installFiles() {
    for (const std::string& package : packages(platform_)) installPackage(package);
    // Packages directly in a product folder were installed above. The other folders in it are
    // copied whole here, over packages inside them that have just been installed.
    for (const ProductFolder& folder : productFolders(platform_)) {
        installer_.installSourceFiles(folder.items, targetPath(folder.path), false, true);
    }
}

void DiskMirror::installPackage(const std::string& package) {
    const std::string destination = targetPath(package);
    installer_.installSourceFiles({package}, parentPath(destination), true, true);
    if (const auto status = platform_.applications.registerApplication(destination)) {
        platform_.log.log(
            formatted("LSRegisterURL returned %@ for %@", {std::to_string(status), destination}));
    }
    commands_.removeQuarantine(destination);
}

/// Where the entry of the mirror belongs. A plain replacement of text: a mirror that contains its
/// own path again loses it there too.
std::string DiskMirror::targetPath(const std::string& path) const {
    const std::string onDisk = withSingleSeparators(replacingAll(path, folder_, ""));
    return withSingleSeparators(platform_.searchPaths.onTargetVolume(onDisk));
}

}  // namespace installer

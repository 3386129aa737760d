#include "install/DiskMirror.h"

#include <vector>

#include "foundation/Format.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "install/FileInstaller.h"
#include "install/PlugInFilesModel.h"
#include "platform/ApplicationDatabase.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/SearchPaths.h"
#include "platform/SystemLog.h"
#include "wizard/LocalizedText.h"

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

void DiskMirror::installFiles() {
    FileManager& files = platform_.files;
    files.walk(folder_, WalkDepth::everything, [this](const WalkEntry& entry) {
        if (entry.isPackage) installPackage(entry);
    });
    // Packages directly in a product folder were installed above. The other folders in it are
    // copied whole here, over packages inside them that the walk has just installed.
    files.walk(companyFolder(platform_), WalkDepth::entries, [this](const WalkEntry& entry) {
        if (entry.type == FileType::folder && !entry.isPackage) installProductFolder(entry.path);
    });
}

void DiskMirror::installPackage(const WalkEntry& package) {
    const std::string destination = targetPath(package.path);
    installer_.installSourceFiles({package.path}, parentPath(destination), true, true);
    if (const auto status = platform_.applications.registerApplication(destination)) {
        platform_.log.log(
            formatted("LSRegisterURL returned %@ for %@", {std::to_string(status), destination}));
    }
    commands_.removeQuarantine(destination);
}

void DiskMirror::installProductFolder(const std::string& productFolder) {
    std::vector<std::string> items;
    platform_.files.walk(productFolder, WalkDepth::entries, [&](const WalkEntry& entry) {
        if (!entry.isPackage) items.push_back(entry.path);
    });
    if (items.empty()) return;
    installer_.installSourceFiles(items, targetPath(productFolder), false, true);
}

/// Where the entry of the mirror belongs. A plain replacement of text: a mirror that contains its
/// own path again loses it there too.
std::string DiskMirror::targetPath(const std::string& path) const {
    const std::string onDisk = withSingleSeparators(replacingAll(path, folder_, ""));
    return withSingleSeparators(platform_.searchPaths.onTargetVolume(onDisk));
}

}  // namespace installer

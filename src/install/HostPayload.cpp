#include "install/HostPayload.h"

#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "hosts/HostModel.h"
#include "install/FileInstaller.h"
#include "install/PlugInFilesModel.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"

namespace installer {

void HostPayload::installFiles(const HostModel& host) {
    const PlugInFilesModel paths(platform_);
    const std::string payload = paths.payloadFolder();
    if (const auto* photoshop = host.as<PhotoshopHostModel>()) {
        copyHostFilesFrom(joinPath(payload, "PHOTOSHOP"), photoshop->appPath());
        copyHostFilesFrom(joinPath(payload, "PHOTOSHOP_PLUGINS"), photoshop->plugInPath());
    } else if (host.as<LightRoomHostModel>() != nullptr) {
        copyHostFilesFrom(joinPath(payload, "LIGHTROOM"), paths.lightRoomSupportPath());
    } else if (const auto* custom = host.as<UnknownHostModel>()) {
        copyHostFilesFrom(joinPath(payload, "PHOTOSHOP_PLUGINS"), custom->plugInPath());
    }
}

void HostPayload::copyHostFilesFrom(const std::string& source, const std::string& to) {
    // With an empty path the files would go to the root of the disk.
    if (to.empty()) return;
    platform_.files.walk(source, WalkDepth::everything, [&](const WalkEntry& entry) {
        if (!entry.isPackage && entry.type != FileType::regular) return;
        const std::string destination = replacingAll(entry.path, source, to);
        installer_.installSourceFiles({entry.path}, parentPath(withSingleSeparators(destination)),
                                      entry.isPackage, true);
    });
}

}  // namespace installer

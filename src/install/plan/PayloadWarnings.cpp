#include "install/plan/PayloadWarnings.h"

#include "foundation/text/Format.h"
#include "foundation/values/Paths.h"
#include "install/engine/DiskMirror.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"

namespace installer {

PayloadWarnings::PayloadWarnings(Platform& platform)
    : platform_(platform),
      files_(platform.files),
      payload_(PlugInFilesModel(platform).payloadFolder()),
      companyFolder_(DiskMirror::companyFolder(platform)) {}

void PayloadWarnings::log() {
    if (files_.exists(payload_)) {
        checkPayload();
    } else {
        platform_.log.log(formatted("There is no payload to install: %@", {payload_}));
    }
}

void PayloadWarnings::checkPayload() {
    warnOfHiddenEntries(payload_);
    files_.walk(payload_, WalkDepth::entries, [this](const WalkEntry& entry) {
        const std::string name = lastPathComponent(entry.path);
        if (name == "HD") {
            checkDiskMirror(entry.path);
        } else if (name == "PHOTOSHOP" || name == "PHOTOSHOP_PLUGINS" || name == "LIGHTROOM") {
            checkHostFolder(entry.path);
        } else {
            warn(entry.path);
        }
    });
}

void PayloadWarnings::checkDiskMirror(const std::string& folder) {
    warnOfHiddenEntries(folder);
    files_.walk(folder, WalkDepth::entries, [&](const WalkEntry& entry) {
        if (entry.isPackage) return;
        if (entry.type != FileType::folder) {
            warn(entry.path);
        } else if (folder == companyFolder_) {
            // A product folder: all that is visible in it is installed.
            warnOfHiddenEntries(entry.path);
        } else {
            checkDiskMirror(entry.path);
        }
    });
}

void PayloadWarnings::checkHostFolder(const std::string& folder) {
    warnOfHiddenEntries(folder);
    files_.walk(folder, WalkDepth::entries, [this](const WalkEntry& entry) {
        if (entry.isPackage || entry.type == FileType::regular) return;
        if (entry.type == FileType::folder) {
            checkHostFolder(entry.path);
        } else {
            warn(entry.path);
        }
    });
}

void PayloadWarnings::warnOfHiddenEntries(const std::string& folder) {
    const auto names = files_.list(folder);
    if (!names) {
        platform_.log.log(formatted("This payload folder cannot be read: %@", {folder}));
        return;
    }
    for (const std::string& name : names.value()) {
        if (name.starts_with('.')) warn(joinPath(folder, name));
    }
}

void PayloadWarnings::warn(const std::string& path) {
    platform_.log.log(formatted("This payload item is never installed: %@", {path}));
}

}  // namespace installer

#include "install/ManifestCleaner.h"

#include <string>

#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "install/PlugInFilesModel.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"

namespace installer {

namespace {

// Names of sub-folders with ";" between them. Empty means one empty name: the maker's folder
// itself.
constexpr const char* subfolders = "";

}  // namespace

void ManifestCleaner::cleanManifests() {
    const std::string base = PlugInFilesModel(platform_).userCompanyAppSupportPath();
    if (base.empty()) return;
    FileManager& files = platform_.files;
    for (const std::string& name : split(subfolders, ';')) {
        files.walk(joinPath(base, name), WalkDepth::everything, [&](const WalkEntry& entry) {
            if (entry.type != FileType::regular) return;
            if (lastPathComponent(entry.path) != "manifest.xml") return;
            static_cast<void>(files.remove(entry.path));
        });
    }
}

}  // namespace installer

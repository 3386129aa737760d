#include "install/after/ManifestCleaner.h"

#include <string>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"

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

#include "install/plan/MirrorItems.h"

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "install/plan/PayloadTrees.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "product/LocalizedText.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

/// Where the entry of the mirror belongs. A plain replacement of text: a mirror that contains its
/// own path again loses it there too.
std::string targetPath(const Platform& platform, const std::string& mirror,
                       const std::string& path) {
    const std::string onDisk = withSingleSeparators(replacingAll(path, mirror, ""));
    return withSingleSeparators(platform.searchPaths.onTargetVolume(onDisk));
}

class MirrorItems {
  public:
    MirrorItems(Platform& platform, PayloadTrees& trees)
        : platform_(platform), trees_(trees), mirror_(mirrorFolder(platform)) {}

    std::vector<PlannedItem> make() {
        addPackages();
        // The sub-folders of a product folder are copied whole, over packages inside them that
        // have been installed with the other packages.
        const std::string company = mirroredCompanyFolder(platform_);
        if (const auto* entries = trees_.entriesBelow(mirror_, company)) {
            for (const TreeEntry& entry : *entries) addProductFolder(company, entry);
        }
        return std::move(items_);
    }

  private:
    void addPackages() {
        const auto* entries = trees_.entriesOf(mirror_);
        if (entries == nullptr) return;
        visitVisible(*entries, mirror_, [this](const std::string& path, const TreeEntry& entry) {
            if (!entry.isPackage) return;
            const std::string target = targetPath(platform_, mirror_, path);
            add(path, parentPath(target), InstallRule::mirrorPackage, entry);
        });
    }

    void addProductFolder(const std::string& company, const TreeEntry& folder) {
        if (isHidden(folder) || folder.type != FileType::folder || folder.isPackage) return;
        const std::string path = joinPath(company, folder.name);
        const std::string target = targetPath(platform_, mirror_, path);
        for (const TreeEntry& entry : folder.entries) {
            if (isHidden(entry) || entry.isPackage) continue;
            add(joinPath(path, entry.name), target, InstallRule::productFolder, entry);
        }
    }

    void add(const std::string& source, const std::string& folder, InstallRule rule,
             const TreeEntry& entry) {
        items_.push_back({.source = source,
                          .destination = joinPath(folder, entry.name),
                          .rule = rule,
                          .host = std::nullopt,
                          .isPackage = entry.isPackage,
                          .bytes = bytesOf(entry)});
    }

    Platform& platform_;
    PayloadTrees& trees_;
    std::string mirror_;
    std::vector<PlannedItem> items_;
};

}  // namespace

std::string mirrorFolder(Platform& platform) {
    return joinPath(PlugInFilesModel(platform).payloadFolder(), "HD");
}

std::string mirroredCompanyFolder(Platform& platform) {
    return joinPath(joinPath(mirrorFolder(platform), "Library/Application Support"),
                    folderName(platform.bundle, "company_name"));
}

std::vector<PlannedItem> mirrorItems(Platform& platform, PayloadTrees& trees) {
    return MirrorItems(platform, trees).make();
}

}  // namespace installer

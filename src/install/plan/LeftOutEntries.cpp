#include "install/plan/LeftOutEntries.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "foundation/values/Paths.h"
#include "install/plan/MirrorItems.h"
#include "install/plan/PayloadTrees.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

constexpr std::array<std::string_view, 3> hostFolders = {"PHOTOSHOP", "PHOTOSHOP_PLUGINS",
                                                         "LIGHTROOM"};

class LeftOut {
  public:
    LeftOut(Platform& platform, PayloadTrees& trees)
        : files_(platform.files),
          trees_(trees),
          payload_(PlugInFilesModel(platform).payloadFolder()),
          company_(mirroredCompanyFolder(platform)) {}

    std::vector<LeftOutEntry> find() {
        const auto names = files_.list(payload_);
        if (!names) {
            add(payload_, LeftOutReason::unreadableFolder);
            return std::move(leftOut_);
        }
        for (const std::string& name : names.value()) {
            if (name.starts_with('.')) add(joinPath(payload_, name), LeftOutReason::hidden);
        }
        for (const std::string& name : names.value()) {
            if (!name.starts_with('.')) checkTop(name);
        }
        return std::move(leftOut_);
    }

  private:
    using Entries = PayloadTrees::Entries;
    using Check = void (LeftOut::*)(const std::string& folder, const TreeEntry& entry);

    void checkTop(const std::string& name) {
        const std::string path = joinPath(payload_, name);
        const bool isHostFolder =
            std::find(hostFolders.begin(), hostFolders.end(), name) != hostFolders.end();
        if (name != "HD" && !isHostFolder) return add(path, LeftOutReason::unknownEntry);
        checkFolder(path, trees_.entriesOf(path),
                    isHostFolder ? &LeftOut::checkHostEntry : &LeftOut::checkMirrorEntry);
    }

    /// `entries` is null when the folder cannot be read.
    void checkFolder(const std::string& folder, const Entries* entries, Check check) {
        if (entries == nullptr) return add(folder, LeftOutReason::unreadableFolder);
        for (const TreeEntry& entry : *entries) {
            if (isHidden(entry)) add(joinPath(folder, entry.name), LeftOutReason::hidden);
        }
        for (const TreeEntry& entry : *entries) {
            if (!isHidden(entry) && !entry.isPackage) (this->*check)(folder, entry);
        }
    }

    void checkMirrorEntry(const std::string& folder, const TreeEntry& entry) {
        const std::string path = joinPath(folder, entry.name);
        if (entry.type == FileType::folder) {
            const bool isProduct = folder == company_;
            checkFolder(path, readable(entry),
                        isProduct ? &LeftOut::takeProductEntry : &LeftOut::checkMirrorEntry);
        } else if (entry.type == FileType::regular) {
            add(path, LeftOutReason::outsideProducts);
        } else {
            add(path, LeftOutReason::linkOrSpecialFile);
        }
    }

    /// All that is visible in a product folder is installed.
    void takeProductEntry(const std::string& /*folder*/, const TreeEntry& /*entry*/) {}

    void checkHostEntry(const std::string& folder, const TreeEntry& entry) {
        const std::string path = joinPath(folder, entry.name);
        if (entry.type == FileType::folder) {
            checkFolder(path, readable(entry), &LeftOut::checkHostEntry);
        } else if (entry.type != FileType::regular) {
            add(path, LeftOutReason::linkOrSpecialFile);
        }
    }

    [[nodiscard]] static const Entries* readable(const TreeEntry& folder) {
        return folder.isUnreadable ? nullptr : &folder.entries;
    }

    void add(const std::string& path, LeftOutReason reason) { leftOut_.push_back({path, reason}); }

    FileManager& files_;
    PayloadTrees& trees_;
    std::string payload_;
    std::string company_;
    std::vector<LeftOutEntry> leftOut_;
};

}  // namespace

std::vector<LeftOutEntry> leftOutEntries(Platform& platform, PayloadTrees& trees) {
    return LeftOut(platform, trees).find();
}

}  // namespace installer

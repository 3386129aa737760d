#include "linux/files/FolderReading.h"

#include <map>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "foundation/values/PackageName.h"
#include "ports/SystemLog.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/SystemError.h"

namespace installer {

FileType fileType(unsigned char directoryType) {
    switch (directoryType) {
        case DT_REG:
            return FileType::regular;
        case DT_DIR:
            return FileType::folder;
        case DT_LNK:
            return FileType::symbolicLink;
        default:
            return FileType::other;
    }
}

Result<std::vector<FolderEntry>> listFolderAt(const std::string& folder, int linkFlag) {
    const FileDescriptor opened(
        open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | linkFlag));
    if (!opened) return systemError();
    return listFolder(opened.get());
}

namespace {

/// The contents of the folder are skipped, so the log must say why. A missing folder is normal and
/// is not logged.
void reportUnlisted(SystemLog& log, const std::string& folder, std::error_code error) {
    if (error == std::errc::no_such_file_or_directory) return;
    log.log("Could not list the folder " + folder + ": " + error.message());
}

class FolderWalk {
  public:
    FolderWalk(SystemLog& log, WalkDepth depth, const std::function<void(const WalkEntry&)>& visit)
        : log_(log), depth_(depth), visit_(visit) {}

    void run(const std::string& folder) {
        enter(folder, 0);
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.next == level.entries.size()) {
                levels_.pop_back();
                continue;
            }
            const FolderEntry entry = std::move(level.entries[level.next++]);
            if (!entry.name.starts_with('.')) meet(level.path + entry.name, entry);
        }
    }

  private:
    struct Level {
        std::string path;  ///< with a separator at its end
        std::vector<FolderEntry> entries;
        std::size_t next = 0;
    };

    void meet(const std::string& path, const FolderEntry& entry) {
        const bool isFolder = entry.type == DT_DIR;
        const bool package = isFolder && isPackageName(entry.name);
        visit_({path, fileType(entry.type), package});
        if (isFolder && !package && depth_ == WalkDepth::everything) enter(path, O_NOFOLLOW);
    }

    void enter(const std::string& folder, int linkFlag) {
        auto entries = listFolderAt(folder, linkFlag);
        if (!entries) return reportUnlisted(log_, folder, entries.error());
        levels_.push_back({folder == "/" ? folder : folder + '/', std::move(entries).value()});
    }

    SystemLog& log_;
    WalkDepth depth_;
    const std::function<void(const WalkEntry&)>& visit_;
    std::vector<Level> levels_;
};

class TreeReading {
  public:
    TreeReading(SystemLog& log, ProgressSink* progress) : log_(log), progress_(progress) {}

    Result<std::vector<TreeEntry>> read(const std::string& folder) { return read(folder, 0); }

  private:
    // Goes no deeper than a path can be long, and holds no descriptor while it goes deeper.
    Result<std::vector<TreeEntry>> read(const std::string& folder, int linkFlag) {
        auto entries = entriesIn(folder, linkFlag);
        if (progress_ != nullptr) progress_->bytesCopied(0);
        if (!entries) {
            reportUnlisted(log_, folder, entries.error());
            return entries;
        }
        for (TreeEntry& entry : entries.value()) {
            if (entry.type != FileType::folder) continue;
            const std::string path = (folder == "/" ? folder : folder + '/') + entry.name;
            auto inner = read(path, O_NOFOLLOW);
            entry.isUnreadable = !inner;
            if (inner) entry.entries = std::move(inner).value();
        }
        return entries;
    }

    Result<std::vector<TreeEntry>> entriesIn(const std::string& folder, int linkFlag) {
        const FileDescriptor opened(
            open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | linkFlag));
        if (!opened) return systemError();
        auto listed = listFolder(opened.get());
        if (!listed) return listed.error();
        std::vector<TreeEntry> entries;
        entries.reserve(listed.value().size());
        for (FolderEntry& found : listed.value()) {
            TreeEntry entry;
            entry.type = fileType(found.type);
            entry.isPackage = found.type == DT_DIR && isPackageName(found.name);
            entry.name = std::move(found.name);
            if (found.type == DT_REG) measure(opened.get(), entry);
            entries.push_back(std::move(entry));
        }
        return entries;
    }

    void measure(int folder, TreeEntry& entry) {
        struct stat status = {};
        if (fstatat(folder, entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return;
        entry.bytes = static_cast<std::uint64_t>(status.st_size);
        if (status.st_nlink < 2) return;
        entry.sharedFile =
            sharedFiles_.try_emplace({status.st_dev, status.st_ino}, sharedFiles_.size() + 1)
                .first->second;
    }

    SystemLog& log_;
    ProgressSink* progress_;
    std::map<std::pair<dev_t, ino_t>, std::uint64_t> sharedFiles_;
};

}  // namespace

void walkFolder(SystemLog& log, const std::string& folder, WalkDepth depth,
                const std::function<void(const WalkEntry&)>& visit) {
    FolderWalk(log, depth, visit).run(folder);
}

Result<std::vector<TreeEntry>> readFolderTree(SystemLog& log, const std::string& folder,
                                              ProgressSink* progress) {
    return TreeReading(log, progress).read(folder);
}

}  // namespace installer

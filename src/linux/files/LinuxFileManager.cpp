#include "linux/files/LinuxFileManager.h"

#include <algorithm>
#include <limits>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/values/PackageName.h"
#include "ports/SystemLog.h"
#include "privileged/files/EntryMode.h"
#include "privileged/files/FolderCreation.h"
#include "privileged/files/FolderListing.h"
#include "privileged/system/AdminGroup.h"
#include "privileged/system/SystemError.h"
#include "privileged/system/WriteAll.h"
#include "privileged/trees/Temporary.h"
#include "privileged/trees/TreeCopy.h"
#include "privileged/trees/TreeRemoval.h"
#include "privileged/trees/TreeSize.h"

namespace installer {

namespace {

constexpr std::size_t readingBlock = 64 << 10;
constexpr mode_t modeBits = 07777;

/// The path as the system calls take it: without separators at its end, which would make them
/// follow a link. None for what names nothing here.
std::optional<std::string> usablePath(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) return std::nullopt;
    const auto last = path.find_last_not_of('/');
    return last == std::string::npos ? "/" : path.substr(0, last + 1);
}

Result<struct stat> statusOf(const std::string& path) {
    const auto usable = usablePath(path);
    if (!usable) return systemError(ENOENT);
    struct stat status = {};
    if (lstat(usable->c_str(), &status) != 0) return systemError();
    return status;
}

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

FileTime fileTime(const timespec& time) {
    return FileTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

Result<std::vector<FolderEntry>> entriesOf(const std::string& folder, int linkFlag) {
    const FileDescriptor opened(
        open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | linkFlag));
    if (!opened) return systemError();
    return listFolder(opened.get());
}

/// A walk passes over what lies in the folder, so somebody should know.
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
        auto entries = entriesOf(folder, linkFlag);
        if (!entries) return reportUnlisted(log_, folder, entries.error());
        levels_.push_back({folder == "/" ? folder : folder + '/', std::move(entries).value()});
    }

    SystemLog& log_;
    WalkDepth depth_;
    const std::function<void(const WalkEntry&)>& visit_;
    std::vector<Level> levels_;
};

/// A folder is told apart from what else cannot be read or written as a file.
std::error_code unlessRegular(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return {};
    return systemError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
}

/// The type is looked at before, since opening a device can do things, and after, since the entry
/// may have been another one.
Result<FileDescriptor> openRegular(int parent, const std::string& name, int flags) {
    struct stat status = {};
    const bool follows = (flags & O_NOFOLLOW) == 0;
    if (fstatat(parent, name.c_str(), &status, follows ? 0 : AT_SYMLINK_NOFOLLOW) != 0) {
        return systemError();
    }
    if (S_ISLNK(status.st_mode)) return systemError(ELOOP);
    if (const auto error = unlessRegular(status)) return error;
    FileDescriptor file(openat(parent, name.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file || fstat(file.get(), &status) != 0) return systemError();
    if (const auto error = unlessRegular(status)) return error;
    return file;
}

Result<std::string> readUpTo(int file, std::size_t limit) {
    std::string text;
    while (text.size() < limit) {
        const std::size_t before = text.size();
        text.resize(before + std::min(limit - before, std::max(readingBlock, before)));
        const auto count = ::read(file, text.data() + before, text.size() - before);
        const int error = errno;
        text.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count < 0 && error != EINTR) return systemError(error);
        if (count == 0) break;
    }
    return text;
}

class OpenedFile : public WritableFile {
  public:
    explicit OpenedFile(FileDescriptor file) : file_(std::move(file)) {}
    std::error_code write(std::string_view text) override { return writeAll(file_.get(), text); }

    std::error_code setSize(std::uint64_t size) override {
        if (size > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
            return systemError(EFBIG);
        }
        int result = 0;
        do {
            result = ftruncate(file_.get(), static_cast<off_t>(size));
        } while (result != 0 && errno == EINTR);
        return result == 0 ? std::error_code() : systemError();
    }

  private:
    FileDescriptor file_;
};

/// Asks one of the account data bases with a buffer that grows until the answer fits. EINVAL for
/// a name that is not in it.
template <class Entry, class Query>
Result<Entry> accountEntry(const std::string& name, std::vector<char>& buffer, Query query) {
    Entry entry = {};
    Entry* found = nullptr;
    int error = 0;
    while ((error = query(name.c_str(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    if (found != nullptr) return entry;
    return systemError(error != 0 && error != ENOENT ? error : EINVAL);
}

}  // namespace

LinkPolicy LinuxFileManager::linkPolicyOfThisProcess() {
    return geteuid() == 0 ? LinkPolicy::trustedOnly : LinkPolicy::follow;
}

bool LinuxFileManager::exists(const std::string& path) {
    const auto status = statusOf(path);
    const bool isMissing = status.error() == std::errc::no_such_file_or_directory ||
                           status.error() == std::errc::not_a_directory;
    // The caller goes on as if nothing was there, so somebody should know.
    if (!status && !isMissing)
        log_.log("Could not look at " + path + ": " + status.error().message());
    return static_cast<bool>(status);
}

Result<std::vector<std::string>> LinuxFileManager::list(const std::string& folder) {
    const auto path = usablePath(folder);
    if (!path) return systemError(ENOENT);
    auto entries = entriesOf(*path, 0);
    if (!entries) return entries.error();
    std::vector<std::string> names;
    names.reserve(entries.value().size());
    for (auto& entry : entries.value()) names.push_back(std::move(entry.name));
    return names;
}

void LinuxFileManager::walk(const std::string& folder, WalkDepth depth,
                            const std::function<void(const WalkEntry&)>& visit) {
    if (const auto path = usablePath(folder)) FolderWalk(log_, depth, visit).run(*path);
}

bool LinuxFileManager::isPackage(const std::string& path) {
    const auto status = statusOf(path);
    if (!status || !S_ISDIR(status.value().st_mode)) return false;
    const std::string usable = usablePath(path).value_or("");
    return isPackageName(std::string_view(usable).substr(usable.rfind('/') + 1));
}

std::error_code LinuxFileManager::copy(const std::string& source, const std::string& destination,
                                       ProgressSink* progress) {
    CopyProgress tell;
    if (progress != nullptr)
        tell = [progress](std::uint64_t bytes) { progress->bytesCopied(bytes); };
    // For a moment the copy belongs to root.
    const auto privileges =
        policy_ == LinkPolicy::trustedOnly ? Privileges::drop : Privileges::keep;
    return copyTree(source, destination, policy_, tell, privileges);
}

std::uint64_t LinuxFileManager::bytesToCopy(const std::string& path) {
    return bytesInTree(path);
}

std::error_code LinuxFileManager::remove(const std::string& path) {
    return removeTree(path, policy_);
}

std::error_code LinuxFileManager::createFolders(const std::string& folder,
                                                std::uint32_t permissions) {
    return makeFolders(folder, permissions & modeBits, policy_);
}

Result<FileAttributes> LinuxFileManager::attributes(const std::string& path) {
    const auto status = statusOf(path);
    if (!status) return status.error();
    FileAttributes attributes;
    attributes.type = fileType(static_cast<unsigned char>(IFTODT(status.value().st_mode)));
    attributes.permissions = status.value().st_mode & modeBits;
    attributes.modificationDate = fileTime(status.value().st_mtim);
    return attributes;
}

std::error_code LinuxFileManager::setAttributes(const std::string& path,
                                                const FileAttributeChanges& changes) {
    constexpr auto unchanged = static_cast<uid_t>(-1);
    const auto owner = changes.owner ? userNumber(*changes.owner) : Result<uid_t>(unchanged);
    if (!owner) return owner.error();
    const auto group = changes.group ? groupNumber(*changes.group) : Result<gid_t>(unchanged);
    if (!group) return group.error();
    const auto location = locate(path, policy_);
    if (!location) return location.error();
    const int parent = location.value().parent.get();
    const std::string& name = location.value().name;
    if ((changes.owner || changes.group) &&
        fchownat(parent, name.c_str(), owner.value(), group.value(), AT_SYMLINK_NOFOLLOW) != 0) {
        return systemError();
    }
    if (changes.permissions) return setEntryMode(parent, name, *changes.permissions);
    return {};
}

Result<std::string> LinuxFileManager::read(const std::string& path, std::size_t limit) {
    const auto usable = usablePath(path);
    if (!usable) return systemError(ENOENT);
    const auto file = openRegular(AT_FDCWD, *usable, O_RDONLY);
    if (!file) return file.error();
    try {
        return readUpTo(file.value().get(), limit);
    } catch (const std::bad_alloc&) {
        return systemError(ENOMEM);
    } catch (const std::length_error&) {
        return systemError(ENOMEM);
    }
}

std::error_code LinuxFileManager::createFile(const std::string& path, std::string_view contents) {
    constexpr mode_t defaultMode = 0666;  // less the process's mask
    const auto location = locate(path, policy_);
    if (!location) return location.error();
    const int parent = location.value().parent.get();
    clearDeadTemporaries(parent);
    auto file = Temporary::makeFile(parent, defaultMode);
    if (!file) return file.error();
    if (const auto error = writeAll(file.value().descriptor(), contents)) return error;
    return file.value().publishReplacing(location.value().name);
}

Result<std::unique_ptr<WritableFile>> LinuxFileManager::openForWriting(const std::string& path) {
    const auto location = locate(path, policy_);
    if (!location) return location.error();
    auto file =
        openRegular(location.value().parent.get(), location.value().name, O_WRONLY | O_NOFOLLOW);
    if (!file) return file.error();
    return std::unique_ptr<WritableFile>(std::make_unique<OpenedFile>(std::move(file).value()));
}

Result<uid_t> LinuxFileManager::userNumber(const std::string& name) {
    if (const auto known = users_.find(name); known != users_.end()) return known->second;
    std::vector<char> buffer(readingBlock);
    const auto user = accountEntry<passwd>(name, buffer, getpwnam_r);
    if (!user) return user.error();
    return users_.emplace(name, user.value().pw_uid).first->second;
}

Result<gid_t> LinuxFileManager::groupNumber(const std::string& name) {
    if (const auto known = groups_.find(name); known != groups_.end()) return known->second;
    if (name == administratorsGroupName) {
        return groups_.emplace(name, administratorsGroup()).first->second;
    }
    std::vector<char> buffer(readingBlock);
    const auto entry = accountEntry<group>(name, buffer, getgrnam_r);
    if (!entry) return entry.error();
    return groups_.emplace(name, entry.value().gr_gid).first->second;
}

}  // namespace installer

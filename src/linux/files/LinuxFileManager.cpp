#include "linux/files/LinuxFileManager.h"

#include <cerrno>
#include <limits>
#include <optional>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"
#include "linux/files/FolderReading.h"
#include "ports/SystemLog.h"
#include "privileged/copies/TreeCopy.h"
#include "privileged/files/EntryMode.h"
#include "privileged/files/FolderCreation.h"
#include "privileged/files/FolderListing.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/Accounts.h"
#include "privileged/system/AdminGroup.h"
#include "privileged/system/SystemError.h"
#include "privileged/system/WriteAll.h"
#include "privileged/trees/Temporary.h"
#include "privileged/trees/TreeRemoval.h"
#include "privileged/trees/TreeSize.h"

namespace installer {

namespace {

constexpr mode_t modeBits = 07777;

/// The path as the system calls take it: without separators at its end, which would make them
/// follow a link. nullopt for a path that is relative or holds a NUL.
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

FileTime fileTime(const timespec& time) {
    return FileTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
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

}  // namespace

LinkPolicy LinuxFileManager::linkPolicyOfThisProcess() {
    return geteuid() == 0 ? LinkPolicy::trustedOnly : LinkPolicy::follow;
}

bool LinuxFileManager::exists(const std::string& path) {
    // Asked several times for each item: a path that is right as it is need not be copied.
    const bool isRight = path.size() > 1 && path.front() == '/' && path.back() != '/' &&
                         path.find('\0') == std::string::npos;
    const auto status = isRight ? stager_.destination().statusOf(path) : statusOf(path);
    const bool isMissing = status.error() == std::errc::no_such_file_or_directory ||
                           status.error() == std::errc::not_a_directory;
    // The caller goes on as if there was no entry, so the log must say why, once for each path.
    if (!status && !isMissing && reported_.insert(path).second)
        log_.log("Could not look at " + path + ": " + status.error().message());
    return static_cast<bool>(status);
}

Result<std::vector<std::string>> LinuxFileManager::list(const std::string& folder) {
    const auto path = usablePath(folder);
    if (!path) return systemError(ENOENT);
    auto entries = listFolderAt(*path, 0);
    if (!entries) return entries.error();
    std::vector<std::string> names;
    names.reserve(entries.value().size());
    for (auto& entry : entries.value()) names.push_back(std::move(entry.name));
    return names;
}

void LinuxFileManager::walk(const std::string& folder, WalkDepth depth,
                            const std::function<void(const WalkEntry&)>& visit) {
    if (const auto path = usablePath(folder)) walkFolder(*path, depth, visit);
}

Result<std::vector<TreeEntry>> LinuxFileManager::readTree(const std::string& folder,
                                                          ProgressSink* progress) {
    const auto path = usablePath(folder);
    if (!path) return systemError(ENOENT);
    return readFolderTree(*path, progress);
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
    FileBegins tellFile;
    if (progress != nullptr) {
        tell = [progress](std::uint64_t bytes) { progress->bytesCopied(bytes); };
        tellFile = [progress](const std::string& name) { progress->fileBegins(name); };
    }
    finished_.forget();
    const auto expected = stager_.take(source, destination);
    if (expected) {
        if (const auto published = stager_.publish(*expected, tell, finished_)) return *published;
    }
    const auto given = expected ? stager_.given() : std::nullopt;
    return withRoom([&] { return copyNow(source, destination, tell, tellFile, given); });
}

std::error_code LinuxFileManager::copyNow(const std::string& source, const std::string& destination,
                                          const CopyProgress& progress,
                                          const FileBegins& fileBegins,
                                          const std::optional<GivenAttributes>& given) {
    stager_.destination().doubtItsPath();
    CopyTask task{.progress = progress,
                  .fileBegins = fileBegins,
                  .privileges = privilegesOfCopies(),
                  .given = given,
                  .workers = threads_.count() > 0 ? &threads_ : nullptr};
    if (const auto error = copyTree(source, destination, policy_, task)) return error;
    struct stat status = {};
    if (given && lstat(destination.c_str(), &status) == 0) {
        finished_.remember({.path = destination}, status, task);
    }
    return {};
}

void LinuxFileManager::expectCopies(CopySchedule schedule) {
    if (!schedule.next) {
        // Nothing of the disk stays open.
        finished_.forget();
        return stager_.end();
    }
    stager_.begin(std::move(schedule.next), givable(schedule.attributes), privilegesOfCopies());
}

std::optional<GivenAttributes> LinuxFileManager::givable(const FileAttributeChanges& attributes) {
    if (::geteuid() != 0 || policy_ != LinkPolicy::trustedOnly) return std::nullopt;
    if (!attributes.owner || !attributes.group || !attributes.permissions) return std::nullopt;
    const auto owner = userNumber(*attributes.owner);
    const auto group = groupNumber(*attributes.group);
    if (!owner || !group) return std::nullopt;
    return GivenAttributes{owner.value(), group.value(), *attributes.permissions & modeBits};
}

/// A copy that root makes belongs to root until its owner is set.
Privileges LinuxFileManager::privilegesOfCopies() const {
    return policy_ == LinkPolicy::trustedOnly ? Privileges::drop : Privileges::keep;
}

/// What is prepared for later copies is no reason for an operation to fail now.
template <class Operation>
std::error_code LinuxFileManager::withRoom(Operation operation) {
    const std::error_code error = operation();
    const int number = error.value();
    const bool isShort = number == ENOSPC || number == EDQUOT || number == EMFILE ||
                         number == ENFILE || number == ENOMEM;
    return isShort && stager_.giveUpPrepared() ? operation() : error;
}

std::uint64_t LinuxFileManager::bytesToCopy(const std::string& path) {
    return bytesInTree(path);
}

std::optional<std::uint64_t> LinuxFileManager::freeBytes(const std::string& path) {
    auto place = usablePath(path);
    if (!place) return std::nullopt;
    struct statvfs space{};
    while (::statvfs(place->c_str(), &space) != 0) {
        if (errno != ENOENT || *place == "/") return std::nullopt;
        *place = parentPath(*place);
    }
    return std::uint64_t{space.f_bavail} * space.f_frsize;
}

std::error_code LinuxFileManager::remove(const std::string& path) {
    stager_.forgetFolder(path);
    return removeTree(path, policy_);
}

std::error_code LinuxFileManager::createFolders(const std::string& folder,
                                                std::uint32_t permissions) {
    return withRoom([&] { return makeFolders(folder, permissions & modeBits, policy_); });
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
    return readBeginning(*usable, limit);
}

std::error_code LinuxFileManager::createFile(const std::string& path, std::string_view contents) {
    return withRoom([&] { return createFileNow(path, contents); });
}

std::error_code LinuxFileManager::createFileNow(const std::string& path,
                                                std::string_view contents) const {
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
    auto file = openRegularFile(location.value().parent.get(), location.value().name,
                                O_WRONLY | O_NOFOLLOW);
    if (!file) return file.error();
    return std::unique_ptr<WritableFile>(
        std::make_unique<OpenedFile>(std::move(file.value().descriptor)));
}

Result<uid_t> LinuxFileManager::userNumber(const std::string& name) {
    if (const auto known = users_.find(name); known != users_.end()) return known->second;
    const auto user = userNamed(name);
    if (!user) return user.error();
    return users_.emplace(name, user.value().number).first->second;
}

Result<gid_t> LinuxFileManager::groupNumber(const std::string& name) {
    if (const auto known = groups_.find(name); known != groups_.end()) return known->second;
    if (name == administratorsGroupName) {
        return groups_.emplace(name, administratorsGroup()).first->second;
    }
    const auto group = groupNamed(name);
    if (!group) return group.error();
    return groups_.emplace(name, group.value()).first->second;
}

}  // namespace installer

#include "privileged/trees/Temporary.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <random>
#include <set>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/files/ExclusiveRename.h"
#include "privileged/files/FolderListing.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/TakeApart.h"

namespace installer {

namespace {

constexpr std::string_view namePrefix = ".installing-";
constexpr std::string_view nameDigits = "0123456789abcdefghjkmnpqrstvwxyz";
constexpr std::size_t nameDigitCount = 8;
constexpr int maximumAttempts = 100;
constexpr std::uint64_t spreadOfProcesses = 0x9E3779B97F4A7C15;  // odd: no two processes meet

// The name need not be hard to guess: an entry that exists already is never used.
std::string newTemporaryName() {
    static std::atomic<std::uint64_t> counter =
        (std::uint64_t{std::random_device()()} << 32U) | std::random_device()();
    // A fork copies the counter: the process's number keeps parent and children apart.
    std::uint64_t number = counter++ + static_cast<std::uint64_t>(getpid()) * spreadOfProcesses;
    std::string name(namePrefix);
    for (std::size_t digit = 0; digit < nameDigitCount; ++digit) {
        name += nameDigits[number % nameDigits.size()];
        number /= nameDigits.size();
    }
    return name;
}

/// False only if another process holds the lock. On a file system without locks no temporary is
/// ever taken for dead.
bool lockUnlessTaken(int descriptor) {
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// The creation time tells a folder from a removed one with the same inode number.
bool isFirstVisit(int folder) {
    using Identity = std::array<std::uint64_t, 5>;
    static std::mutex mutex;
    // Never destroyed: settings are also written while the process is on its way out.
    static auto* const visited = new std::set<Identity>();
    struct statx status = {};
    if (statx(folder, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0) return false;
    const Identity identity = {status.stx_dev_major, status.stx_dev_minor, status.stx_ino,
                               static_cast<std::uint64_t>(status.stx_btime.tv_sec),
                               status.stx_btime.tv_nsec};
    const std::scoped_lock guard(mutex);
    return visited->insert(identity).second;
}

/// Root removes every user's dead temporaries, other users only their own.
bool isOurs(const struct stat& status) {
    return (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)) &&
           (status.st_uid == geteuid() || geteuid() == 0);
}

void clearIfDead(int parent, const std::string& name) {
    const FileDescriptor entry(
        openat(parent, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat opened = {};
    if (!entry || fstat(entry.get(), &opened) != 0 || !isOurs(opened)) return;
    if (flock(entry.get(), LOCK_EX | LOCK_NB) != 0) return;
    // Its process may have published it between the open and the lock.
    struct stat named = {};
    if (fstatat(parent, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        named.st_dev != opened.st_dev || named.st_ino != opened.st_ino) {
        return;
    }
    std::ignore = takeApart(parent, name);
}

}  // namespace

Temporary::Temporary(Temporary&& other) noexcept
    : parent_(other.parent_),
      name_(std::exchange(other.name_, std::string())),
      descriptor_(std::move(other.descriptor_)),
      mode_(other.mode_) {}

Temporary::~Temporary() {
    std::ignore = remove();
}

Result<Temporary> Temporary::makeFile(int parent, mode_t mode) {
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        Temporary file(parent, newTemporaryName());
        file.descriptor_.reset(openat(parent, file.name_.c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (!file.descriptor_) {
            const auto error = systemError();
            file.name_.clear();
            if (error != std::errc::file_exists) return error;
            continue;
        }
        if (file.lock()) return file;
        file.name_.clear();  // whoever took it removes it, and the name may soon be another's
    }
    return systemError(EEXIST);
}

Result<Temporary> Temporary::makeFolder(int parent) {
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        Temporary folder(parent, newTemporaryName());
        if (mkdirat(parent, folder.name_.c_str(), S_IRWXU) != 0) {
            const auto error = systemError();
            folder.name_.clear();
            if (error != std::errc::file_exists) return error;
            continue;
        }
        folder.descriptor_.reset(
            openat(parent, folder.name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!folder.descriptor_ && errno != ENOENT) return systemError();
        if (folder.descriptor_ && folder.lock()) return folder;
        folder.name_.clear();  // as above
    }
    return systemError(EEXIST);
}

Result<Temporary> Temporary::moveAside(int parent, const std::string& name) {
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        Temporary folder(parent, newTemporaryName());
        if (const auto error = renameWithoutReplacing(parent, name, parent, folder.name_)) {
            folder.name_.clear();
            if (error != std::errc::file_exists) return error;
            continue;
        }
        // Without the lock another process may remove parts of it too, which does no harm.
        folder.descriptor_.reset(
            openat(parent, folder.name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (folder.descriptor_) static_cast<void>(lockUnlessTaken(folder.descriptor_.get()));
        return folder;
    }
    return systemError(EEXIST);
}

/// False if another process took the entry for dead before it was locked. That process removes it,
/// and a new one must be made.
bool Temporary::lock() {
    struct stat status = {};
    if (!lockUnlessTaken(descriptor_.get()) || fstat(descriptor_.get(), &status) != 0) {
        return false;
    }
    mode_ = status.st_mode & 07777;
    return status.st_nlink > 0;
}

std::error_code Temporary::publish(const std::string& name) {
    const auto error = renameWithoutReplacing(parent_, name_, parent_, name);
    if (!error) name_.clear();
    return error;
}

std::error_code Temporary::publishReplacing(const std::string& name) {
    if (renameat(parent_, name_.c_str(), parent_, name.c_str()) != 0) return systemError();
    name_.clear();
    return {};
}

std::error_code Temporary::remove() {
    if (name_.empty()) return {};
    return takeApart(parent_, std::exchange(name_, std::string()));
}

bool isTemporaryName(std::string_view name) {
    return name.size() == namePrefix.size() + nameDigitCount && name.starts_with(namePrefix) &&
           name.find_first_not_of(nameDigits, namePrefix.size()) == std::string_view::npos;
}

void clearDeadTemporaries(int folder) {
    if (isFirstVisit(folder)) clearDeadTemporariesAgain(folder);
}

void clearDeadTemporariesAgain(int folder) {
    const FileDescriptor readable(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!readable) return;
    const auto entries = listFolder(readable.get());
    if (!entries) return;
    for (const auto& entry : entries.value()) {
        const bool canBeOurs = entry.type == DT_REG || entry.type == DT_DIR;
        if (canBeOurs && isTemporaryName(entry.name)) clearIfDead(folder, entry.name);
    }
}

}  // namespace installer

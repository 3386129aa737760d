#include "linux/files/UserFiles.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/Result.h"
#include "privileged/files/PathWalk.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/SystemError.h"
#include "privileged/system/WriteAll.h"
#include "privileged/trees/Temporary.h"

namespace installer {

namespace {

constexpr mode_t folderMode = 0755;
constexpr mode_t fileMode = 0644;
constexpr mode_t modeWhileFilled = 0600;

struct Owner {
    uid_t user = 0;
    gid_t group = 0;
};

/// A folder in which an entry is about to be made.
struct Folder {
    FileDescriptor descriptor;
    bool insideHome = false;  ///< below the home folder, with no link between
};

/// The user and group that new entries are given to; nullopt if this process makes them with the
/// right owner anyway.
std::optional<Owner> ownerOfNewEntries(const std::optional<std::string>& home) {
    struct stat status{};
    if (::geteuid() != 0 || !home || ::stat(home->c_str(), &status) != 0) return std::nullopt;
    if (status.st_uid == 0) return std::nullopt;
    return Owner{status.st_uid, status.st_gid};
}

std::error_code giveAway(int entry, const Folder& folder, const std::optional<Owner>& owner) {
    if (!owner) return {};
    struct stat status{};
    if (::fstat(folder.descriptor.get(), &status) != 0) return systemError();
    if (!folder.insideHome && status.st_uid != owner->user) return {};
    return ::fchown(entry, owner->user, owner->group) == 0 ? std::error_code() : systemError();
}

std::error_code makeFolder(Folder& parent, const std::string& name,
                           const std::optional<Owner>& owner) {
    if (::mkdirat(parent.descriptor.get(), name.c_str(), folderMode) != 0) return systemError();
    FileDescriptor made(::openat(parent.descriptor.get(), name.c_str(),
                                 O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!made) return systemError();
    if (const auto error = giveAway(made.get(), parent, owner)) return error;
    parent.descriptor = std::move(made);
    return {};
}

/// Root can write anywhere, so it follows only the links of root and of the user it writes for, and
/// that user's only to folders of that user's own (see `followed`).
LinkTrust linkTrust(const std::optional<Owner>& owner) {
    if (::geteuid() != 0) return LinkTrust::any();
    return LinkTrust::ofRootOr(owner ? std::optional(owner->user) : std::nullopt);
}

/// The folder behind a link. A link of the user's leads root only to where the user could write
/// without root: a folder of the system may hold what is started for everybody.
Result<FileDescriptor> followed(const FileDescriptor& folder, const std::string& name,
                                const std::optional<Owner>& owner) {
    const auto walk = [&](const LinkTrust& trust) -> Result<FileDescriptor> {
        FileDescriptor start(::fcntl(folder.get(), F_DUPFD_CLOEXEC, 0));
        if (!start) return systemError();
        return walkPath(std::move(start), name, trust);
    };
    if (!owner) return walk(linkTrust(owner));
    auto target = walk(LinkTrust::ofRootOr(std::nullopt));
    if (target || target.error() != std::errc::too_many_symbolic_link_levels) return target;
    target = walk(linkTrust(owner));
    struct stat status{};
    if (!target) return target;
    if (::fstat(target.value().get(), &status) != 0) return systemError();
    if (status.st_uid != owner->user) return systemError(ELOOP);
    return target;
}

std::error_code enterFolder(Folder& folder, const std::string& name,
                            const std::optional<Owner>& owner) {
    constexpr int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    FileDescriptor entered(::openat(folder.descriptor.get(), name.c_str(), flags | O_NOFOLLOW));
    if (!entered && errno == ENOENT) return makeFolder(folder, name, owner);
    if (!entered) {
        auto target = followed(folder.descriptor, name, owner);
        if (!target) return target.error();
        folder.insideHome = false;
        entered = std::move(target).value();
    }
    folder.descriptor = std::move(entered);
    return {};
}

/// Root goes to the home folder by the same rule as below it, and only to the one whose owner it
/// writes for: HOME may name a link, and a link may be changed while it is looked at.
Result<FileDescriptor> openHome(const std::string& home, const std::optional<Owner>& owner) {
    if (::geteuid() != 0) {
        FileDescriptor folder(::open(home.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        return folder ? Result<FileDescriptor>(std::move(folder)) : systemError();
    }
    auto folder = walkPath({}, home, linkTrust(owner));
    if (!folder) return folder;
    struct stat status{};
    if (::fstat(folder.value().get(), &status) != 0) return systemError();
    if (status.st_uid != (owner ? owner->user : 0)) return systemError(ELOOP);
    return folder;
}

Result<Folder> openFolder(const std::string& path, const std::optional<std::string>& home,
                          const std::optional<Owner>& owner) {
    Folder folder;
    std::string below = path;
    if (home && (path == *home || path.starts_with(*home + "/"))) {
        auto opened = openHome(*home, owner);
        if (!opened && opened.error() == std::errc::too_many_symbolic_link_levels) {
            return opened.error();
        }
        folder.insideHome = static_cast<bool>(opened);
        if (folder.insideHome) {
            folder.descriptor = std::move(opened).value();
            below = path.substr(home->size());
        }
    }
    if (!folder.descriptor) folder.descriptor.reset(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.descriptor) return systemError();
    for (const auto& component : split(below, '/')) {
        if (component.empty() || component == ".") continue;
        if (component == "..") folder.insideHome = false;
        if (const auto error = enterFolder(folder, component, owner)) return error;
    }
    return folder;
}

/// Gives the new file the owner and permissions of the old one.
std::error_code inherit(int file, const struct stat& old) {
    struct stat status{};
    if (::fstat(file, &status) != 0) return systemError();
    const bool differs = status.st_uid != old.st_uid || status.st_gid != old.st_gid;
    // Only root can change the owner; for other users the file becomes their own.
    if (differs && ::fchown(file, old.st_uid, old.st_gid) != 0 && ::geteuid() == 0)
        return systemError();
    return ::fchmod(file, old.st_mode & 0777) == 0 ? std::error_code() : systemError();
}

std::error_code prepare(int file, const Folder& folder, const std::string& name,
                        const std::optional<Owner>& owner) {
    struct stat old{};
    const int found = ::fstatat(folder.descriptor.get(), name.c_str(), &old, AT_SYMLINK_NOFOLLOW);
    if (found == 0 && S_ISREG(old.st_mode)) return inherit(file, old);
    if (::fchmod(file, fileMode) != 0) return systemError();
    return giveAway(file, folder, owner);
}

}  // namespace

UserFiles::UserFiles(std::optional<std::string> homeFolder) : home_(std::move(homeFolder)) {
    if (home_ && !home_->starts_with('/')) home_.reset();
    if (home_) home_ = withSingleSeparators(*home_);
}

std::error_code UserFiles::replace(const std::string& path, std::string_view contents,
                                   Durability durability) const {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) return systemError(ENOENT);
    const auto owner = ownerOfNewEntries(home_);
    const auto folder = openFolder(withSingleSeparators(parentPath(path)), home_, owner);
    if (!folder) return folder.error();
    const int parent = folder.value().descriptor.get();
    clearDeadTemporaries(parent);
    auto file = Temporary::makeFile(parent, modeWhileFilled);
    if (!file) return file.error();

    const int descriptor = file.value().descriptor();
    const std::string name = lastPathComponent(path);
    if (const auto error = prepare(descriptor, folder.value(), name, owner)) return error;
    if (const auto error = writeAll(descriptor, contents)) return error;
    if (durability == Durability::atOnce && ::fsync(descriptor) != 0) return systemError();
    return file.value().publishReplacing(name);
}

}  // namespace installer

#include "privileged/files/Location.h"

#include <array>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <limits.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr int maximumLinks = 40;

bool isUsable(std::string_view path) {
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

/// The components from last to first, without empty ones and ".".
std::vector<std::string> reversedComponents(std::string_view path) {
    std::vector<std::string> components;
    while (!path.empty()) {
        const auto slash = path.rfind('/');
        const auto name = path.substr(slash == std::string_view::npos ? 0 : slash + 1);
        if (!name.empty() && name != ".") components.emplace_back(name);
        path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
    }
    return components;
}

bool holdsParentComponent(std::string_view path) {
    for (auto at = path.find(".."); at != std::string_view::npos; at = path.find("..", at + 1)) {
        const bool begins = at == 0 || path[at - 1] == '/';
        const bool ends = at + 2 == path.size() || path[at + 2] == '/';
        if (begins && ends) return true;
    }
    return false;
}

/// Goes down a path component by component and follows a link only where root alone could have
/// put it: every folder from the root down to it belongs to root and nobody else can write there.
/// The sticky bit does not help, since anybody may add a link to such a folder.
class TrustedWalk {
  public:
    Result<FileDescriptor> open(const std::string& path) {
        if (const auto error = startAtRoot()) return error;
        remaining_ = reversedComponents(path);
        while (!remaining_.empty()) {
            const std::string name = std::move(remaining_.back());
            remaining_.pop_back();
            if (const auto error = name == ".." ? goUp() : goDown(name)) return error;
        }
        return std::move(folder_);
    }

  private:
    std::error_code startAtRoot() {
        folder_.reset(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
        struct stat status = {};
        if (!folder_ || fstat(folder_.get(), &status) != 0) return systemError();
        trusted_ = belongsToRootAlone(status);
        return {};
    }

    std::error_code goDown(const std::string& name) {
        FileDescriptor entry(openat(folder_.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status = {};
        if (!entry || fstat(entry.get(), &status) != 0) return systemError();
        if (S_ISLNK(status.st_mode)) return follow(entry);
        if (!S_ISDIR(status.st_mode)) return systemError(ENOTDIR);
        folder_ = std::move(entry);
        trusted_ = trusted_ && belongsToRootAlone(status);
        return {};
    }

    // Only root's links can hold "..", and only a folder that nobody can move has a parent that
    // is sure to be the one through which the walk came.
    std::error_code goUp() {
        if (!trusted_) return systemError(ELOOP);
        FileDescriptor parent(openat(folder_.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!parent) return systemError();
        folder_ = std::move(parent);
        return {};
    }

    std::error_code follow(const FileDescriptor& link) {
        if (!trusted_ || ++linksFollowed_ > maximumLinks) return systemError(ELOOP);
        std::array<char, PATH_MAX> target = {};
        const auto length = readlinkat(link.get(), "", target.data(), target.size());
        if (length < 0) return systemError();
        const std::string_view text(target.data(), static_cast<std::size_t>(length));
        if (text.starts_with('/')) {
            if (const auto error = startAtRoot()) return error;
        }
        for (auto& component : reversedComponents(text)) {
            remaining_.insert(remaining_.end(), std::move(component));
        }
        return {};
    }

    static bool belongsToRootAlone(const struct stat& status) {
        return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    }

    FileDescriptor folder_;
    bool trusted_ = false;
    std::vector<std::string> remaining_;  ///< the next one last
    int linksFollowed_ = 0;
};

Result<FileDescriptor> openTrustedFolder(const std::string& path) {
    if (holdsParentComponent(path)) return systemError(EINVAL);
    struct open_how how = {};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
    // Hardly any path holds a link, and then one call decides it.
    FileDescriptor folder(
        static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
    if (folder) return folder;
    if (errno != ELOOP && errno != ENOSYS && errno != EPERM) return systemError();
    return TrustedWalk().open(path);
}

}  // namespace

Result<FileDescriptor> openFolder(const std::string& path, LinkPolicy policy) {
    if (!isUsable(path)) return systemError(ENOENT);
    if (policy == LinkPolicy::trustedOnly) return openTrustedFolder(path);
    FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return systemError();
    return folder;
}

Result<Location> locate(const std::string& path, LinkPolicy policy) {
    if (!isUsable(path)) return systemError(ENOENT);
    const auto last = path.find_last_not_of('/');
    if (last == std::string::npos) return systemError(EINVAL);
    const auto slash = path.rfind('/', last);
    std::string name = path.substr(slash + 1, last - slash);
    if (name == "." || name == "..") return systemError(EINVAL);
    auto parent = openFolder(path.substr(0, slash + 1), policy);
    if (!parent) return parent.error();
    return Location{std::move(parent).value(), std::move(name)};
}

}  // namespace installer

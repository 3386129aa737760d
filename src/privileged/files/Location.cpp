#include "privileged/files/Location.h"

#include <string_view>
#include <utility>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "privileged/files/PathWalk.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

bool isUsable(std::string_view path) {
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

bool holdsParentComponent(std::string_view path) {
    for (auto at = path.find(".."); at != std::string_view::npos; at = path.find("..", at + 1)) {
        const bool begins = at == 0 || path[at - 1] == '/';
        const bool ends = at + 2 == path.size() || path[at + 2] == '/';
        if (begins && ends) return true;
    }
    return false;
}

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
    return walkPath({}, path, LinkTrust::inRootsFolders());
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

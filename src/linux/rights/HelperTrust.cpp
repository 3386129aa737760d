#include "linux/rights/HelperTrust.h"

#include <cstdlib>
#include <memory>

#include <sys/stat.h>
#include <sys/xattr.h>

#include "privileged/system/Accounts.h"

namespace installer {

namespace {

/// Where there is an access control list, the mode's bits for the group say what anybody in the
/// list may do at most.
bool hasAccessList(const std::string& path) {
    return ::lgetxattr(path.c_str(), "system.posix_acl_access", nullptr, 0) > 0;
}

bool canBeChangedByOthers(const std::string& path, uid_t user) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) return true;
    if (status.st_uid != 0 && status.st_uid != user) return true;
    const bool isSticky = S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
    if (isSticky) return false;
    if ((status.st_mode & S_IWOTH) != 0) return true;
    if ((status.st_mode & S_IWGRP) == 0) return false;
    return hasAccessList(path) || (status.st_gid != 0 && !isOwnGroup(status.st_gid, user));
}

}  // namespace

std::optional<std::string> whatOthersCanChange(const std::string& program, uid_t user) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(program.c_str(), nullptr),
                                                               &std::free);
    if (!resolved) return program;
    const std::string path = resolved.get();
    if (canBeChangedByOthers("/", user)) return "/";
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        std::string entry = path.substr(0, end);
        if (canBeChangedByOthers(entry, user)) return entry;
        if (end == std::string::npos) return std::nullopt;
    }
}

}  // namespace installer

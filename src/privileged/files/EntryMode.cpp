#include "privileged/files/EntryMode.h"

#include <atomic>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

// Not named in older system headers; the number is the same on every architecture.
constexpr long fchmodat2Call = 452;

/// fchmodat2, and on kernels that lack it the C library's longer way through /proc.
int changeMode(int parent, const char* name, mode_t mode) {
    static std::atomic<bool> kernelLacksCall = false;
    if (!kernelLacksCall) {
        const long result = syscall(fchmodat2Call, parent, name, mode, AT_SYMLINK_NOFOLLOW);
        if (result == 0 || (errno != ENOSYS && errno != EPERM)) return static_cast<int>(result);
        if (errno == ENOSYS) kernelLacksCall = true;
    }
    return fchmodat(parent, name, mode, AT_SYMLINK_NOFOLLOW);
}

}  // namespace

std::error_code setEntryMode(int parent, const std::string& name, mode_t mode) {
    if (changeMode(parent, name.c_str(), mode & 07777) == 0) return {};
    const auto error = systemError();
    struct stat status = {};
    const bool isLink =
        fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
    return isLink ? std::error_code() : error;
}

}  // namespace installer

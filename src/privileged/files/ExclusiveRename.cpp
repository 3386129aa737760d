#include "privileged/files/ExclusiveRename.h"

#include <cstdio>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/files/FolderListing.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

bool claimName(int folder, const std::string& name, bool asFolder) {
    if (asFolder) return mkdirat(folder, name.c_str(), S_IRWXU) == 0;
    const FileDescriptor claim(
        openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return static_cast<bool>(claim);
}

bool hardLinksAreRefused(int error) {
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK;
}

}  // namespace

std::error_code renameWithoutReplacing(int fromFolder, const std::string& from, int toFolder,
                                       const std::string& to) {
    if (renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    // The C library tells of a kernel that does not know the call by the same error.
    if (errno != EINVAL) return systemError();
    return renameAfterClaiming(fromFolder, from, toFolder, to);
}

std::error_code renameAfterClaiming(int fromFolder, const std::string& from, int toFolder,
                                    const std::string& to) {
    const auto type = entryType(fromFolder, from);
    if (!type) return type.error();
    const bool isFolder = type.value() == DT_DIR;
    if (!isFolder) {
        if (linkat(fromFolder, from.c_str(), toFolder, to.c_str(), 0) == 0) {
            static_cast<void>(unlinkat(fromFolder, from.c_str(), 0));
            return {};
        }
        if (!hardLinksAreRefused(errno)) return systemError();
    }
    if (!claimName(toFolder, to, isFolder)) return systemError();
    if (renameat(fromFolder, from.c_str(), toFolder, to.c_str()) == 0) return {};
    const auto error = systemError();
    static_cast<void>(unlinkat(toFolder, to.c_str(), isFolder ? AT_REMOVEDIR : 0));
    return error;
}

}  // namespace installer

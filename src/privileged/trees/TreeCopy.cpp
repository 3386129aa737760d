#include "privileged/trees/TreeCopy.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "privileged/files/ExclusiveRename.h"
#include "privileged/files/FolderListing.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/EntryCopy.h"
#include "privileged/trees/FolderCopy.h"
#include "privileged/trees/Temporary.h"

namespace installer {

namespace {

// What of a file's mode may show while it is being filled. One that its owner could not read
// could not be cleared either if this process died.
mode_t modeWhileFilled(mode_t mode) {
    constexpr mode_t ownerAccess = S_IRUSR | S_IWUSR;
    return (mode & ownerAccess) == ownerAccess ? mode & 0777 : ownerAccess;
}

std::error_code copyFile(const Location& from, const Location& to, const CopyProgress& progress,
                         Privileges privileges) {
    const auto source = openRegularFile(from.parent.get(), from.name, O_RDONLY | O_NOFOLLOW);
    if (!source) return source.error();
    const struct stat& status = source.value().status;
    auto file = Temporary::makeFile(to.parent.get(), modeWhileFilled(status.st_mode));
    if (!file) return file.error();
    const auto error = fillFile(source.value().descriptor.get(), status, file.value().descriptor(),
                                file.value().mode(), privileges, progress);
    return error ? error : file.value().publish(to.name);
}

// A link cannot be locked, so it is made in a folder that is.
std::error_code copyLink(const Location& from, const Location& to) {
    constexpr const char* name = "link";
    struct stat status = {};
    if (fstatat(from.parent.get(), from.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return systemError();
    }
    const auto folder = Temporary::makeFolder(to.parent.get());
    if (!folder) return folder.error();
    const int inFolder = folder.value().descriptor();
    if (const auto error = makeLinkLike(from.parent.get(), from.name, status, inFolder, name)) {
        return error;
    }
    return renameWithoutReplacing(inFolder, name, to.parent.get(), to.name);
}

std::error_code copyFolder(const Location& from, const Location& to, const CopyProgress& progress,
                           Privileges privileges) {
    // The last step would find it too, but only after a long copy.
    if (entryType(to.parent.get(), to.name)) return systemError(EEXIST);
    auto folder = Temporary::makeFolder(to.parent.get());
    if (!folder) return folder.error();
    const auto error = copyFolderInto(from.parent.get(), from.name, folder.value().descriptor(),
                                      privileges, progress);
    return error ? error : folder.value().publish(to.name);
}

}  // namespace

std::error_code copyTree(const std::string& source, const std::string& destination,
                         LinkPolicy policy, const CopyProgress& progress, Privileges privileges) {
    const auto from = locate(source, policy);
    if (!from) return from.error();
    const auto to = locate(destination, policy);
    if (!to) return to.error();
    const auto type = entryType(from.value().parent.get(), from.value().name);
    if (!type) return type.error();
    clearDeadTemporaries(to.value().parent.get());
    switch (type.value()) {
        case DT_REG:
            return copyFile(from.value(), to.value(), progress, privileges);
        case DT_DIR:
            return copyFolder(from.value(), to.value(), progress, privileges);
        case DT_LNK:
            return copyLink(from.value(), to.value());
        default:
            return systemError(EINVAL);
    }
}

}  // namespace installer

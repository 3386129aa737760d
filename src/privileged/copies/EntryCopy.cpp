#include "privileged/copies/EntryCopy.h"

#include <array>

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include "privileged/copies/ExtendedAttributes.h"
#include "privileged/copies/FileContents.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr mode_t permissionBits = 07777;
constexpr mode_t privilegeBits = S_ISUID | S_ISGID;

std::array<timespec, 2> timesOf(const struct stat& status) {
    return {status.st_atim, status.st_mtim};
}

/// Whether the entry now has what the task has to give: the owner first, whose change clears bits
/// of the mode.
bool give(int destination, CopyTask& task) {
    if (!task.given) return false;
    const bool isGiven = fchown(destination, task.given->owner, task.given->group) == 0 &&
                         fchmod(destination, task.given->mode) == 0;
    if (!isGiven) task.allGiven = false;
    return isGiven;
}

/// Attributes come first: those that hold an access list change the mode.
std::error_code copyProperties(int source, const struct stat& status, int destination, mode_t mode,
                               CopyTask& task) {
    const auto attributeCount = copyExtendedAttributes(source, destination, task);
    if (!attributeCount) return attributeCount.error();
    if (attributeCount.value() > 0) task.hasAttributes = true;
    if (!give(destination, task)) {
        const mode_t kept =
            task.privileges == Privileges::keep ? permissionBits : permissionBits & ~privilegeBits;
        const mode_t wanted = status.st_mode & kept;
        const bool modeIsRight = mode == wanted && attributeCount.value() == 0 && !task.given;
        if (!modeIsRight && fchmod(destination, wanted) != 0) return systemError();
    }
    if (futimens(destination, timesOf(status).data()) != 0) return systemError();
    return {};
}

}  // namespace

std::error_code fillFile(int source, const struct stat& status, int destination, mode_t mode,
                         CopyTask& task, const CopyProgress& progress) {
    if (const auto error =
            copyContents(source, status.st_size, status.st_blocks, destination, progress)) {
        return error;
    }
    return copyProperties(source, status, destination, mode, task);
}

std::error_code finishFolder(int source, const struct stat& status, int destination,
                             CopyTask& task) {
    return copyProperties(source, status, destination, unknownMode, task);
}

std::error_code makeLinkLike(int parent, const std::string& name, const struct stat& status,
                             int toParent, const std::string& toName, CopyTask& task) {
    std::array<char, PATH_MAX> target;
    const auto length = readlinkat(parent, name.c_str(), target.data(), target.size() - 1);
    if (length < 0) return systemError();
    target.at(static_cast<std::size_t>(length)) = '\0';
    if (symlinkat(target.data(), toParent, toName.c_str()) != 0 ||
        utimensat(toParent, toName.c_str(), timesOf(status).data(), AT_SYMLINK_NOFOLLOW) != 0) {
        return systemError();
    }
    if (task.given && fchownat(toParent, toName.c_str(), task.given->owner, task.given->group,
                               AT_SYMLINK_NOFOLLOW) != 0) {
        task.allGiven = false;
    }
    return {};
}

}  // namespace installer

#include "privileged/copies/TreeCopy.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "privileged/copies/EntryCopy.h"
#include "privileged/copies/FolderCopy.h"
#include "privileged/copies/NamelessFile.h"
#include "privileged/files/ExclusiveRename.h"
#include "privileged/files/FolderListing.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/FileSystemUser.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/Temporary.h"

namespace installer {

namespace {

// What of a file's mode may show while it is being filled. One that its owner could not read
// could not be cleared either if this process died.
mode_t modeWhileFilled(mode_t mode) {
    constexpr mode_t ownerAccess = S_IRUSR | S_IWUSR;
    return (mode & ownerAccess) == ownerAccess ? mode & 0777 : ownerAccess;
}

// All of them by the rights of the reader.

Result<Location> locateSource(const std::string& source, LinkPolicy policy, const CopyTask& task) {
    const ActingAs reader(task.reader);
    return locate(source, policy);
}

Result<unsigned char> typeOfSource(const Location& from, const CopyTask& task) {
    const ActingAs reader(task.reader);
    return entryType(from.parent.get(), from.name);
}

Result<RegularFile> openSource(const Location& from, const CopyTask& task) {
    const ActingAs reader(task.reader);
    return openFoundRegularFile(from.parent.get(), from.name, O_RDONLY | O_NOFOLLOW);
}

std::error_code lookAtSource(const Location& from, struct stat& status, const CopyTask& task) {
    const ActingAs reader(task.reader);
    const bool isSeen =
        fstatat(from.parent.get(), from.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    return isSeen ? std::error_code() : systemError();
}

std::error_code copyToTemporary(const RegularFile& source, const Location& to, CopyTask& task,
                                const CopyProgress& progress) {
    auto file = Temporary::makeFile(to.parent.get(), modeWhileFilled(source.status.st_mode));
    if (!file) return file.error();
    const auto error = fillFile(source.descriptor.get(), source.status, file.value().descriptor(),
                                file.value().mode(), task, progress);
    return error ? error : file.value().publish(to.name);
}

std::error_code copyFile(const Location& from, const Location& to, CopyTask& task) {
    const auto found = openSource(from, task);
    if (!found) return found.error();
    const RegularFile& source = found.value();
    const auto file = NamelessFile::make(to.parent.get());
    if (!file && !NamelessFile::isUnsupported(file.error())) return file.error();
    if (!file) return copyToTemporary(source, to, task, task.progress);
    if (const auto error = fillFile(source.descriptor.get(), source.status,
                                    file.value().descriptor(), unknownMode, task, task.progress)) {
        return error;
    }
    const auto error = file.value().publish(to.parent.get(), to.name);
    if (!error || error == std::errc::file_exists) return error;
    // Not every file system names such a file afterwards. The bytes have been told of.
    return copyToTemporary(source, to, task, {});
}

// A link cannot be locked, so it is made in a folder that is.
std::error_code copyLink(const Location& from, const Location& to, CopyTask& task) {
    constexpr const char* name = "link";
    struct stat status = {};
    if (const auto error = lookAtSource(from, status, task)) return error;
    const auto folder = Temporary::makeFolder(to.parent.get());
    if (!folder) return folder.error();
    const int inFolder = folder.value().descriptor();
    if (const auto error =
            makeLinkLike(from.parent.get(), from.name, status, inFolder, name, task)) {
        return error;
    }
    return renameWithoutReplacing(inFolder, name, to.parent.get(), to.name);
}

std::error_code copyFolder(const Location& from, const Location& to, CopyTask& task) {
    // The last step would find it too, but only after a long copy.
    if (entryType(to.parent.get(), to.name)) return systemError(EEXIST);
    auto folder = Temporary::makeFolder(to.parent.get());
    if (!folder) return folder.error();
    const auto error =
        copyFolderInto(from.parent.get(), from.name, folder.value().descriptor(), task);
    return error ? error : folder.value().publish(to.name);
}

}  // namespace

std::error_code copyTree(const std::string& source, const std::string& destination,
                         LinkPolicy policy, CopyTask& task) {
    const auto from = locateSource(source, policy, task);
    if (!from) return from.error();
    const auto to = locate(destination, policy);
    if (!to) return to.error();
    return copyEntry(from.value(), to.value(), task);
}

std::error_code copyTree(const std::string& source, const std::string& destination,
                         LinkPolicy policy, const CopyProgress& progress, Privileges privileges) {
    CopyTask task{.progress = progress, .privileges = privileges};
    return copyTree(source, destination, policy, task);
}

std::error_code copyEntry(const Location& from, const Location& to, CopyTask& task) {
    const auto type = typeOfSource(from, task);
    if (!type) return type.error();
    clearDeadTemporaries(to.parent.get());
    switch (type.value()) {
        case DT_REG:
            return copyFile(from, to, task);
        case DT_DIR:
            return copyFolder(from, to, task);
        case DT_LNK:
            return copyLink(from, to, task);
        default:
            return systemError(EINVAL);
    }
}

}  // namespace installer

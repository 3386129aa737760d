#include "privileged/files/FolderCreation.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

bool isMissing(std::error_code error) {
    return error == std::errc::no_such_file_or_directory;
}

std::error_code checkExistingFolder(const std::string& path, LinkPolicy policy) {
    const auto folder = openFolder(path, policy);
    // The entry exists, so it is a link whose target is missing.
    return isMissing(folder.error()) ? systemError(EEXIST) : folder.error();
}

/// Makes one folder. ENOENT when the one above it is missing.
std::error_code makeFolder(const std::string& path, mode_t mode, LinkPolicy policy) {
    const auto location = locate(path, policy);
    if (!location) return location.error();
    const int parent = location.value().parent.get();
    const char* name = location.value().name.c_str();
    if (mkdirat(parent, name, (mode & 0777) | S_IRWXU) != 0) {
        return errno == EEXIST ? checkExistingFolder(path, policy) : systemError();
    }
    // The process's mask took bits away, and mkdirat knows only nine.
    const FileDescriptor folder(
        openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder || fchmod(folder.get(), mode) != 0) return systemError();
    return {};
}

/// The length of the path without its last component.
std::size_t parentLength(const std::string& path, std::size_t length) {
    const auto end = path.find_last_not_of('/', length - 1);
    const auto slash = end == std::string::npos ? end : path.rfind('/', end);
    const auto parentEnd = slash == std::string::npos ? slash : path.find_last_not_of('/', slash);
    return parentEnd == std::string::npos ? 0 : parentEnd + 1;
}

}  // namespace

std::error_code makeFolders(const std::string& path, mode_t mode, LinkPolicy policy) {
    if (path.find_first_not_of('/') == std::string::npos) {
        return openFolder(path, policy).error();
    }
    // From the whole path up to the first whose parent exists, then down again.
    std::size_t length = path.size();
    auto error = makeFolder(path, mode, policy);
    while (isMissing(error)) {
        length = parentLength(path, length);
        if (length == 0) return error;
        error = makeFolder(path.substr(0, length), mode, policy);
    }
    while (!error && length < path.size()) {
        const auto next = path.find('/', path.find_first_not_of('/', length));
        length = next == std::string::npos ? path.size() : next;
        error = makeFolder(path.substr(0, length), mode, policy);
    }
    return error;
}

std::error_code touchFile(const std::string& path, LinkPolicy policy) {
    const auto location = locate(path, policy);
    if (!location) return location.error();
    const int parent = location.value().parent.get();
    const char* name = location.value().name.c_str();
    constexpr mode_t mode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
    const FileDescriptor made(
        openat(parent, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (made) return {};
    if (errno != EEXIST) return systemError();
    if (utimensat(parent, name, nullptr, AT_SYMLINK_NOFOLLOW) != 0) return systemError();
    return {};
}

}  // namespace installer

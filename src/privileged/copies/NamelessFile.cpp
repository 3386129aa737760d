#include "privileged/copies/NamelessFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/system/SystemError.h"

namespace installer {

Result<NamelessFile> NamelessFile::make(int folder) {
    FileDescriptor file(openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file) return systemError();
    return NamelessFile(std::move(file));
}

/// Kernels and file systems that do not know the flag take it for an attempt to write to a folder.
bool NamelessFile::isUnsupported(std::error_code error) {
    const int number = error.value();
    return number == EOPNOTSUPP || number == EISDIR || number == EINVAL || number == ENOSYS;
}

std::error_code NamelessFile::publish(int folder, const std::string& name) const {
    if (linkat(descriptor(), "", folder, name.c_str(), AT_EMPTY_PATH) == 0) return {};
    if (errno != ENOENT && errno != EPERM) return systemError();
    // Older kernels let only some processes of root name a file by its descriptor alone.
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor());
    if (linkat(AT_FDCWD, path.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0) return {};
    return systemError();
}

}  // namespace installer

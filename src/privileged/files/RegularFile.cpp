#include "privileged/files/RegularFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/system/FileDescriptor.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

Result<std::string> readAll(int descriptor, std::size_t expected, std::size_t limit) {
    std::string contents;
    std::size_t filled = 0;
    for (;;) {
        // One byte more than expected shows the end without a further call, and a file that grows
        // while it is read, or that has no size of its own, is still read to its end.
        contents.resize(std::max(expected + 1, filled + filled / 2 + 1));
        const ssize_t count =
            ::read(descriptor, contents.data() + filled, contents.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return systemError();
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
        if (filled > limit) return systemError(EFBIG);
    }
    contents.resize(filled);
    return contents;
}

}  // namespace

Result<std::string> readRegularFile(const std::string& path, std::size_t limit) {
    if (path.empty() || path.find('\0') != std::string::npos) return systemError(ENOENT);
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file) return systemError();
    struct stat status{};
    if (::fstat(file.get(), &status) != 0) return systemError();
    if (S_ISDIR(status.st_mode)) return systemError(EISDIR);
    if (!S_ISREG(status.st_mode)) return systemError(EINVAL);
    const auto size = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
    if (size > limit) return systemError(EFBIG);
    return readAll(file.get(), size, limit);
}

}  // namespace installer

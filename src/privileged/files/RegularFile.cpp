#include "privileged/files/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

std::error_code unlessRegular(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return {};
    return systemError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
}

Result<RegularFile> openForReading(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) return systemError(ENOENT);
    return openRegularFile(AT_FDCWD, path, O_RDONLY);
}

/// 0 for a file of the kernel, which tells no size.
std::size_t toldSize(const RegularFile& file) {
    return static_cast<std::size_t>(std::max<off_t>(file.status.st_size, 0));
}

std::string filled(const RegularFile& file, std::size_t limit, std::error_code& error) {
    // One byte more than told shows the end without a further call. A file that grows meanwhile,
    // or that tells no size, is still read to its end.
    std::size_t wanted = toldSize(file) + 1;
    std::string text;
    std::size_t length = 0;
    while (length < limit) {
        text.resize(std::min(limit, std::max(wanted, length + length / 2 + 1)));
        const ssize_t count =
            ::read(file.descriptor.get(), text.data() + length, text.size() - length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) error = systemError();
        if (count <= 0) break;
        length += static_cast<std::size_t>(count);
    }
    text.resize(length);
    return text;
}

Result<std::string> readUpTo(const RegularFile& file, std::size_t limit) {
    try {
        std::error_code error;
        std::string text = filled(file, limit, error);
        if (error) return error;
        return text;
    } catch (const std::bad_alloc&) {
        return systemError(ENOMEM);
    } catch (const std::length_error&) {
        return systemError(ENOMEM);
    }
}

}  // namespace

Result<RegularFile> openRegularFile(int parent, const std::string& name, int flags) {
    struct stat status = {};
    const int linkFlag = (flags & O_NOFOLLOW) == 0 ? 0 : AT_SYMLINK_NOFOLLOW;
    if (fstatat(parent, name.c_str(), &status, linkFlag) != 0) return systemError();
    if (S_ISLNK(status.st_mode)) return systemError(ELOOP);
    if (const auto error = unlessRegular(status)) return error;
    return openFoundRegularFile(parent, name, flags);
}

Result<RegularFile> openFoundRegularFile(int parent, const std::string& name, int flags) {
    struct stat status = {};
    FileDescriptor file(openat(parent, name.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    // Another entry may have taken its place meanwhile.
    if (!file || fstat(file.get(), &status) != 0) return systemError();
    if (const auto error = unlessRegular(status)) return error;
    return RegularFile{std::move(file), status};
}

Result<std::string> readBeginning(const std::string& path, std::size_t limit) {
    const auto file = openForReading(path);
    return file ? readUpTo(file.value(), limit) : file.error();
}

Result<std::string> readRegularFile(const std::string& path, std::size_t limit) {
    const auto file = openForReading(path);
    if (!file) return file.error();
    if (toldSize(file.value()) > limit) return systemError(EFBIG);
    const bool canAskForMore = limit < std::numeric_limits<std::size_t>::max();
    auto text = readUpTo(file.value(), canAskForMore ? limit + 1 : limit);
    if (text && text.value().size() > limit) return systemError(EFBIG);
    return text;
}

}  // namespace installer

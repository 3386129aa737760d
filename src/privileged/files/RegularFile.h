#pragma once

#include <cstddef>
#include <string>

#include <sys/stat.h>

#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

// Regular files only: a FIFO, device or socket is refused (EINVAL) before it is opened, because
// opening one can wait or have an effect. A folder is EISDIR.

/// An opened file and its status at that moment.
struct RegularFile {
    FileDescriptor descriptor;
    struct stat status = {};
};

/// Opens the entry with these flags of open(2). A link is followed unless O_NOFOLLOW is given, and
/// is ELOOP then. `parent` may be AT_FDCWD.
[[nodiscard]] Result<RegularFile> openRegularFile(int parent, const std::string& name, int flags);

/// The same without the look before it, for a caller who has just seen that it is a regular file.
[[nodiscard]] Result<RegularFile> openFoundRegularFile(int parent, const std::string& name,
                                                       int flags);

/// At most the first `limit` bytes of the file. Follows links. Errors: ENOENT for a path that is
/// empty or holds a NUL, ENOMEM if the contents do not fit in memory, else the system's own.
[[nodiscard]] Result<std::string> readBeginning(const std::string& path, std::size_t limit);

/// The whole contents of a file of at most `limit` bytes; EFBIG for a larger one. Else as
/// `readBeginning`.
[[nodiscard]] Result<std::string> readRegularFile(const std::string& path, std::size_t limit);

}  // namespace installer

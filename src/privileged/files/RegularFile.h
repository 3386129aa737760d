#pragma once

#include <cstddef>
#include <string>

#include "foundation/values/Result.h"

namespace installer {

/// The whole contents of a regular file of at most `limit` bytes. Follows links. Errors: EFBIG for
/// a larger file, EISDIR for a folder, EINVAL for a FIFO, device or socket (none of which is waited
/// for), ENOENT for a path that is empty or holds a NUL, else the system's own.
[[nodiscard]] Result<std::string> readRegularFile(const std::string& path, std::size_t limit);

}  // namespace installer

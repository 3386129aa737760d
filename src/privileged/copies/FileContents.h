#pragma once

#include <system_error>

#include <sys/types.h>

#include "privileged/copies/TreeCopy.h"

namespace installer {

/// Copies what is in an opened regular file to an empty one: within the kernel where the file
/// systems can, so that one that shares blocks does so, and holes stay holes. `size` and `blocks`
/// are what the source's status says; a source without a size (as in /proc) is read to its end.
/// Holes count as copied bytes. A failure leaves a part.
[[nodiscard]] std::error_code copyContents(int source, off_t size, blkcnt_t blocks, int destination,
                                           const CopyProgress& progress);

}  // namespace installer

#pragma once

#include <cstddef>

#include "foundation/values/Result.h"
#include "privileged/copies/TreeCopy.h"

namespace installer {

/// Copies the extended attributes of an opened file or folder to another, takes the access control
/// lists that the source lacks from it, and tells how many attributes changed.
/// Those in the "user." name space must arrive; of the others, which belong to the system, those
/// that this process may set on that file system, and a file's capabilities only where privileges
/// are kept.
[[nodiscard]] Result<std::size_t> copyExtendedAttributes(int source, int destination,
                                                         const CopyTask& task);

}  // namespace installer

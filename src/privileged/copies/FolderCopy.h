#pragma once

#include <string>
#include <system_error>

#include "privileged/copies/TreeCopy.h"

namespace installer {

/// Fills an empty folder, opened for reading, with what is in the source folder and gives it its
/// properties. Stops at the first failure and leaves what it made so far. EINVAL for a folder that
/// is to be copied into itself. The task's workers fill files while this thread makes the next.
[[nodiscard]] std::error_code copyFolderInto(int sourceParent, const std::string& name,
                                             int destination, CopyTask& task);

}  // namespace installer

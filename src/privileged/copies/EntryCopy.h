#pragma once

#include <string>
#include <system_error>

#include <sys/stat.h>

#include "privileged/copies/TreeCopy.h"

namespace installer {

/// Stands for a mode that is not known.
inline constexpr mode_t unknownMode = ~mode_t{0};

/// Gives an empty file the source's contents, extended attributes, mode and times, or instead of
/// the mode what the task has to give. `mode` is the one the empty file has, when that is known.
[[nodiscard]] std::error_code fillFile(int source, const struct stat& status, int destination,
                                       mode_t mode, CopyTask& task, const CopyProgress& progress);

/// Gives a folder, whose contents are complete, the source's extended attributes, mode and times.
[[nodiscard]] std::error_code finishFolder(int source, const struct stat& status, int destination,
                                           CopyTask& task);

/// Makes a link with the same target and times. A link's attributes are the system's own: users
/// cannot set any.
[[nodiscard]] std::error_code makeLinkLike(int parent, const std::string& name,
                                           const struct stat& status, int toParent,
                                           const std::string& toName, CopyTask& task);

}  // namespace installer

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <system_error>

#include "privileged/files/Location.h"

namespace installer {

/// Called with the number of bytes copied since the last call: at least once for each MiB, and with
/// 0 at each entry of a folder, so that a copy of many empty ones is seen to go on.
using CopyProgress = std::function<void(std::uint64_t)>;

/// What lets a program run with its file's rights: the set-user-ID and set-group-ID bits and the
/// file's capabilities.
enum class Privileges { keep, drop };

/// Copies an entry and everything in it, as `FileManager::copy` promises: whole or not at all
/// (a temporary sibling is filled, then renamed without replacing), links as links, with modes,
/// modification times, extended attributes and hard links; EINVAL for a FIFO, device or socket
/// anywhere in it. A temporary that a process left behind when it died is removed by the next
/// copy into that folder.
[[nodiscard]] std::error_code copyTree(const std::string& source, const std::string& destination,
                                       LinkPolicy policy, const CopyProgress& progress,
                                       Privileges privileges = Privileges::keep);

}  // namespace installer

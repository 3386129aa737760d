#pragma once

#include <string>
#include <system_error>

#include "platform/linux/files/Location.h"

namespace installer {

/// Removes an entry and everything in it, as `FileManager::remove` promises: renamed aside to a
/// hidden temporary first, then taken apart without following any link. ENOENT when there is
/// none.
[[nodiscard]] std::error_code removeTree(const std::string& path, LinkPolicy policy);

}  // namespace installer

#pragma once

#include <string>
#include <system_error>

#include "privileged/files/Location.h"

namespace installer {

/// Removes an entry and everything in it, as `FileManager::remove` promises: a folder is renamed
/// aside to a hidden temporary first, then taken apart without following any link; anything else
/// goes in one step. ENOENT when there is none; temporaries that others left in
/// the folder are then removed, where that is allowed. When the renaming is refused, the entry is
/// whole at its path; a failure after that means that it is gone from its path, but that a part of
/// it is left under the temporary name, which the next copy into that folder tries to clear.
[[nodiscard]] std::error_code removeTree(const std::string& path, LinkPolicy policy);

}  // namespace installer

#pragma once

#include <string>
#include <system_error>

namespace installer {

/// Renames an entry and fails with EEXIST where there is already one of the new name, of whatever
/// type. Atomic, on every file system whose kernel driver knows such a rename; elsewhere as
/// `renameAfterClaiming`. A failure leaves the entry under its old name.
[[nodiscard]] std::error_code renameWithoutReplacing(int fromFolder, const std::string& from,
                                                     int toFolder, const std::string& to);

/// The same for file systems that refuse a rename that must not replace. A file or link gets its
/// new name as a hard link and then loses the old one; a folder, or where there are no hard links,
/// takes the place of an empty entry that was made under the new name first, and which a process
/// that dies at that moment leaves.
[[nodiscard]] std::error_code renameAfterClaiming(int fromFolder, const std::string& from,
                                                  int toFolder, const std::string& to);

}  // namespace installer

#pragma once

#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include "foundation/values/Result.h"
#include "ports/FileManager.h"
#include "privileged/files/FolderListing.h"

namespace installer {

class SystemLog;

// How the file manager reads folders. Paths are absolute, without separators at their ends. A link
// at the path itself is followed, links below it are not.

/// The type that a DT_ constant stands for.
[[nodiscard]] FileType fileType(unsigned char directoryType);

/// The folder's entries in the file system's own order. `linkFlag` is 0, or O_NOFOLLOW to refuse a
/// link.
[[nodiscard]] Result<std::vector<FolderEntry>> listFolderAt(const std::string& folder,
                                                            int linkFlag);

/// The contents of the folder are skipped, so the log must say why. A missing folder is normal and
/// is not logged.
void reportUnlisted(SystemLog& log, const std::string& folder, std::error_code error);

/// `FileManager::walk` and `FileManager::readTree`. The log is told of each folder that cannot be
/// listed.
void walkFolder(SystemLog& log, const std::string& folder, WalkDepth depth,
                const std::function<void(const WalkEntry&)>& visit);
[[nodiscard]] Result<std::vector<TreeEntry>> readFolderTree(SystemLog& log,
                                                            const std::string& folder,
                                                            ProgressSink* progress);

}  // namespace installer

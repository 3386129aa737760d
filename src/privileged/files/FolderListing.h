#pragma once

#include <string>
#include <vector>

#include "foundation/values/Result.h"

namespace installer {

/// One entry of a folder: its name and what it is (DT_REG, DT_DIR, DT_LNK ... of <dirent.h>).
struct FolderEntry {
    std::string name;
    unsigned char type = 0;
};

/// Reads the whole folder from a descriptor opened for reading, "." and ".." left out, in the file
/// system's own order. DT_UNKNOWN remains only for what vanished meanwhile.
[[nodiscard]] Result<std::vector<FolderEntry>> listFolder(int folder);

/// Reads on from where the descriptor is, for folders that may be too large to be held whole: adds
/// some entries to those given, a thousand or so at a time. False at the folder's end.
[[nodiscard]] Result<bool> listMore(int folder, std::vector<FolderEntry>& entries);

/// What the entry is, as a DT_ constant; links are not followed.
[[nodiscard]] Result<unsigned char> entryType(int parent, const std::string& name);

}  // namespace installer

#pragma once

#include <string>
#include <system_error>

#include "privileged/files/Location.h"
#include "tools/installerctl/records/EntryMap.h"

namespace installer {

/// What became of an entry that was to be removed.
enum class Removal {
    removed,
    missing,   ///< there is none
    changed,   ///< it is not as it was recorded; it stays
    notEmpty,  ///< a folder with more in it; it stays
    failed,
};

struct RemovalOutcome {
    Removal removal = Removal::failed;
    std::error_code error;  ///< why it failed
};

/// Removes the entry at the path if it is as one of the records says, over its opened parent folder
/// and without following a link that the policy forbids. A folder is removed only if it is empty,
/// whatever its mode.
[[nodiscard]] RemovalOutcome removeRecorded(const std::string& path,
                                            const EntryMap::Alternatives& records,
                                            LinkPolicy links);

/// The same for a folder of which nothing else is recorded.
[[nodiscard]] RemovalOutcome removeEmptyFolder(const std::string& path, LinkPolicy links);

/// Removes what copies that died have left in the folder under their temporary names.
void clearDeadCopies(const std::string& folder, LinkPolicy links);

}  // namespace installer

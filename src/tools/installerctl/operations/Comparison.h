#pragma once

#include <string>
#include <vector>

#include "tools/installerctl/output/Report.h"
#include "tools/installerctl/records/EntryMap.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer {

/// How an item's place on the disk compares with what it must hold.
struct ItemComparison {
    bool isThere = false;              ///< whether there is an entry at the place itself
    std::vector<PathNote> changed;     ///< entries of other contents, kind or mode
    std::vector<PathNote> missing;     ///< entries that are not there
    std::vector<EntryRecord> extra;    ///< entries that must not be there
    std::vector<EntryRecord> present;  ///< all that is there
};

/// Reads the place and everything in it.
[[nodiscard]] ItemComparison compareItem(const std::string& destination, const EntryMap& expected,
                                         LinkPolicy links, const ReadProgress& progress = {});

/// The entries of a list of one tree that lie in no other entry of it.
[[nodiscard]] std::vector<std::string> topmost(const std::vector<EntryRecord>& records);

}  // namespace installer

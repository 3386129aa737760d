#pragma once

#include <string>
#include <vector>

#include "tools/installerctl/output/Report.h"

namespace installer {

/// Takes what users put into folders that a run replaces out of its way, and brings it back. It
/// waits in a hidden folder beside the item, whose name follows from the item's: what a run left
/// there when it died is brought back by the next one. Root's work: the entries are renamed over
/// opened folders, and no link is followed that others can make.
class UserFilesAside {
  public:
    /// Moves the entry, somewhere in the item, aside. What went wrong, or the empty text.
    [[nodiscard]] std::string setAside(const std::string& item, const std::string& entry);

    /// Whether something waits beside the item.
    [[nodiscard]] bool waits(const std::string& item) const;

    /// Brings everything back that waits beside the item. What is there already stays, and what
    /// waits too: then the note says where.
    [[nodiscard]] std::vector<PathNote> bringBack(const std::string& item);
};

}  // namespace installer

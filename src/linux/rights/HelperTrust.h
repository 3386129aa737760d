#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace installer {

/// The first entry on the way from the root folder to the program, the program included, that
/// somebody but root and that user could change or replace; nullopt if there is none. Links are
/// resolved first. An entry that cannot be looked at counts as one that others could change. In a
/// folder with the sticky bit, everybody may add entries, but only their owners replace them. The
/// group of an entry may write if it is root's, or the user's own with nobody else in it.
[[nodiscard]] std::optional<std::string> whatOthersCanChange(const std::string& program,
                                                             uid_t user);

}  // namespace installer

#pragma once

#include <optional>
#include <set>
#include <string>

namespace installer {

/// Where and how the entry at `there`, with all that is in it, differs from the one at `here`, as a
/// part of a sentence; nullopt if they hold the same. Owners, modes and times do not count.
[[nodiscard]] std::optional<std::string> differenceOf(const std::string& here,
                                                      const std::string& there);

/// Every entry below the folder that is no folder, by its path below it.
[[nodiscard]] std::set<std::string> filesBelow(const std::string& folder);

}  // namespace installer

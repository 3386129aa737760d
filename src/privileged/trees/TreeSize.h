#pragma once

#include <cstdint>
#include <string>

namespace installer {

/// What `copyTree` tells its progress of the entry, all in all: the sizes of its regular files, one
/// with several names in the entry only once. What cannot be read or is not there counts as 0.
[[nodiscard]] std::uint64_t bytesInTree(const std::string& path);

}  // namespace installer

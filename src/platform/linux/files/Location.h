#pragma once

#include <string>

#include "foundation/Result.h"
#include "platform/linux/files/FileDescriptor.h"

namespace installer {

/// Which links may stand before the last component of a path.
enum class LinkPolicy {
    /// Any: the caller acts with no more rights than whoever made the links.
    follow,
    /// Only those in folders that nobody but root can change, for a process that acts as root on
    /// paths where others can write: a neighbour's link never leads it elsewhere.
    trustedOnly,
};

/// An entry named by its opened parent folder, so that nobody can swap a folder between a check
/// and the act. The entry itself may be missing.
struct Location {
    FileDescriptor parent;
    std::string name;
};

/// Opens the parent folder of an absolute path. Errors: ENOENT for a path that is relative, empty
/// or holds a NUL, or whose parent is missing; ELOOP for a link that the policy forbids; EINVAL
/// for a last component "." or ".." and for the root.
[[nodiscard]] Result<Location> locate(const std::string& path, LinkPolicy policy);

}  // namespace installer

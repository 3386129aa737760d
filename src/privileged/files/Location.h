#pragma once

#include <string>

#include "foundation/values/Result.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// Which links may stand before the last component of a path.
enum class LinkPolicy {
    /// Any: the caller has no more rights than the owner of the link.
    follow,
    /// Only those in folders that root alone can change (`LinkTrust::inRootsFolders`). For a
    /// process
    /// that acts as root on paths where other users can write: their links are never followed. A
    /// path that holds ".." is refused.
    trustedOnly,
};

/// An entry named by its opened parent folder, so that no other user can swap a folder between
/// a check and its use. The entry itself may be missing.
struct Location {
    FileDescriptor parent;
    std::string name;
};

/// Opens the parent folder of an absolute path. Errors: ENOENT for a path that is relative, empty
/// or holds a NUL, or whose parent is missing; ELOOP for a link that the policy forbids; EINVAL
/// for a last component "." or "..", for the root, and for a ".." that the policy forbids.
[[nodiscard]] Result<Location> locate(const std::string& path, LinkPolicy policy);

/// Opens the folder at an absolute path as a place to work in (O_PATH: it cannot be listed). A
/// link in its last component is followed like those before it. Errors as those of `locate`;
/// ENOTDIR for another entry.
[[nodiscard]] Result<FileDescriptor> openFolder(const std::string& path, LinkPolicy policy);

}  // namespace installer

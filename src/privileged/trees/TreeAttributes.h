#pragma once

#include <string>
#include <system_error>

#include <sys/types.h>

#include "privileged/files/Location.h"

namespace installer {

// Each works on an entry and everything in it, over descriptors, follows no link at any depth and
// goes on after a failure: the first failure is what it returns.

/// Sets owner and group; a link's own are set.
[[nodiscard]] std::error_code setOwnerOfTree(const std::string& path, uid_t owner, gid_t group,
                                             LinkPolicy policy);

/// Sets exactly the twelve mode bits given; links are left alone.
[[nodiscard]] std::error_code setModeOfTree(const std::string& path, mode_t mode,
                                            LinkPolicy policy);

/// Removes an extended attribute where it is set; a file system without such attributes has it
/// nowhere. Links are left alone.
[[nodiscard]] std::error_code removeAttributeOfTree(const std::string& path,
                                                    const std::string& attribute,
                                                    LinkPolicy policy);

}  // namespace installer

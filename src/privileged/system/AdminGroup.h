#pragma once

#include <string_view>

#include <sys/types.h>

namespace installer {

/// The group that stands for the system's administrators: the first that exists of "admin", "sudo"
/// and "wheel", else root's. Both the file manager and the privileged helper ask here. Looked up
/// once in a process.
[[nodiscard]] gid_t administratorsGroup();

/// The name by which the rules call that group on every platform.
inline constexpr std::string_view administratorsGroupName = "admin";

}  // namespace installer

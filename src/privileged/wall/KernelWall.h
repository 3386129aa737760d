#pragma once

#include <optional>
#include <string>
#include <vector>

namespace installer {

/// Whether the machine's devices can be opened beyond the wall.
enum class Devices { usable, closed };

/// Has the kernel make everything read-only for this process and those that it starts, but the
/// folders and what lies below them: whatever this program is made to do, it can write nowhere
/// else. A missing folder is stood for by the nearest one above it that exists. It takes effect in
/// a mount namespace of this process's own, and cannot be undone once the rights for that are given
/// up. Returns why there is no such wall, for the log; nullopt if there is one. Where the kernel or
/// a container forbids it, and where one of the folders is the root, everything stays as it was.
[[nodiscard]] std::optional<std::string> raiseKernelWall(const std::vector<std::string>& folders,
                                                         Devices devices);

/// Gives up every right of root's but those of changing any file and its owner and of acting as
/// another user, for this process and those that it starts, for ever.
void giveUpOtherRights();

}  // namespace installer

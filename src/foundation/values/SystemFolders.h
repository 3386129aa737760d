#pragma once

#include <span>
#include <string>
#include <string_view>

namespace installer {

/// Whether an entry at that absolute path would be one of the system's own folders, a home folder,
/// or lie within one, so that nothing is ever installed there: `/etc`, `/usr`, `/bin`, `/sbin`,
/// `/lib` and its kin, `/boot`, `/dev`, `/proc`, `/sys`, `/run`, `/root`, `/var`, other people's
/// homes in `/home` and `/Users`, and the root itself.
///
/// What lies below one of `ownHomes`, below `/usr/local`, `/Users/Shared`, or on a mounted disk
/// (`/mnt`, `/media`, `/run/media`, `/Volumes`) does not count, wherever that is. "." and ".." are
/// resolved in the text; nothing is looked up on the disk. False for a path that is not absolute.
[[nodiscard]] bool isInSystemFolder(std::string_view path, std::span<const std::string> ownHomes);

}  // namespace installer

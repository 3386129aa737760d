#pragma once

#include <string>
#include <system_error>

#include <sys/types.h>

namespace installer {

/// Sets exactly the twelve mode bits of the entry; a link, which has none, is left alone and is a
/// success.
[[nodiscard]] std::error_code setEntryMode(int parent, const std::string& name, mode_t mode);

}  // namespace installer

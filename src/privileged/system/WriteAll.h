#pragma once

#include <string_view>
#include <system_error>

namespace installer {

/// Writes the whole text at the file's current place. A failure can leave a part of it.
[[nodiscard]] std::error_code writeAll(int file, std::string_view text);

}  // namespace installer

#pragma once

#include <string>
#include <system_error>

namespace installer {

/// Removes the entry and everything in it, in place and without following links. A folder of the
/// process's own user that is not readable, writable and searchable for it is made so. What has
/// vanished meanwhile is a success. A failure leaves what could not be removed.
[[nodiscard]] std::error_code takeApart(int parent, const std::string& name);

}  // namespace installer

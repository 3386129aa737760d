#pragma once

#include <cerrno>
#include <system_error>

namespace installer {

/// A system call's error number, by default the last one's, as an error code.
[[nodiscard]] inline std::error_code systemError(int number = errno) {
    return {number, std::generic_category()};
}

}  // namespace installer

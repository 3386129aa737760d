#pragma once

#include <string>
#include <system_error>

#include <sys/types.h>

#include "privileged/files/Location.h"

namespace installer {

/// Makes the folder and the missing ones above it, each with exactly that mode. An existing folder
/// is a success, any other existing entry ENOTDIR or EEXIST. A failure leaves the folders made so
/// far.
[[nodiscard]] std::error_code makeFolders(const std::string& path, mode_t mode, LinkPolicy policy);

/// Makes an empty regular file with mode 0644 less the process's mask, or sets the times of the
/// entry that is there to now. A link is never followed, a FIFO never waited for.
[[nodiscard]] std::error_code touchFile(const std::string& path, LinkPolicy policy);

}  // namespace installer

#pragma once

#include <system_error>

#include "privileged/copies/TreeCopy.h"
#include "privileged/wall/InvokingUser.h"
#include "privileged/wall/Policy.h"

namespace installer {

/// Does what the command says, as the tool of that name would, but over descriptors and without a
/// process. No link is followed that another user than root could have put into a path. The
/// file operations say what a failure leaves; removing a missing entry is a success.
[[nodiscard]] std::error_code perform(const Command& command, const InvokingUser& user,
                                      const CopyProgress& progress);

}  // namespace installer

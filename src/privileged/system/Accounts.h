#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

#include "foundation/values/Result.h"

namespace installer {

/// An entry of the system's user data base.
struct UserAccount {
    uid_t number = 0;
    std::string name;
    std::string home;  ///< as it stands there; may be empty
};

// The only look-ups of accounts. Errors: EINVAL if the system has no such entry, and for a name
// that is empty or holds a NUL; else the data base's own error.

[[nodiscard]] Result<UserAccount> userNamed(std::string_view name);
[[nodiscard]] Result<UserAccount> userNumbered(uid_t number);
[[nodiscard]] Result<gid_t> groupNamed(std::string_view name);

}  // namespace installer

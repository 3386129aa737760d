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
    gid_t group = 0;   ///< the user's own one
};

// The only look-ups of accounts. Errors: EINVAL if the system has no such entry, and for a name
// that is empty or holds a NUL; else the data base's own error.

[[nodiscard]] Result<UserAccount> userNamed(std::string_view name);
[[nodiscard]] Result<UserAccount> userNumbered(uid_t number);
[[nodiscard]] Result<gid_t> groupNamed(std::string_view name);

/// Whether what lies below that folder is the user's own business. Anybody may call any folder a
/// home, so an ordinary user must own it. Root may act for the owner of a home, but no other folder
/// of root's than the account's own home counts.
[[nodiscard]] bool isOwnHome(const std::string& folder, const UserAccount& account);

/// Whether the group has the user's login name and no member beside that user.
[[nodiscard]] bool isOwnGroup(gid_t group, uid_t user);

}  // namespace installer

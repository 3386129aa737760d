#pragma once

#include <string>
#include <vector>

#include "privileged/system/Accounts.h"

namespace installer {

/// For whom a verb works.
struct AskedUsers {
    std::vector<std::string> logins;  ///< none means the user who started the program
    bool everybody = false;
};

/// The users, each once; those of a target volume (its path, else empty) are the folders of its
/// `Users`. Everybody is each account of a person: numbered as people are, with a home folder of
/// its own. The home is empty for the user who started the program: the environment names it.
struct FoundUsers {
    std::vector<UserAccount> users;
    std::string unknown;  ///< the first login that nobody has; empty if all are known
};
[[nodiscard]] FoundUsers usersAskedFor(const AskedUsers& asked, const std::string& targetVolume);

}  // namespace installer

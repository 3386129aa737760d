#include "tools/installerctl/machine/Users.h"

#include <algorithm>
#include <filesystem>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/values/Paths.h"

namespace installer {

namespace {

constexpr uid_t firstPerson = 1000;
constexpr uid_t lastPerson = 59999;

bool ownsHome(const UserAccount& account) {
    struct stat status{};
    return ::stat(account.home.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == account.number;
}

std::vector<UserAccount> peopleOfThisSystem() {
    std::vector<UserAccount> people;
    ::setpwent();
    while (const passwd* entry = ::getpwent()) {
        if (entry->pw_uid < firstPerson || entry->pw_uid > lastPerson) continue;
        UserAccount account{entry->pw_uid, entry->pw_name, entry->pw_dir};
        if (ownsHome(account)) people.push_back(std::move(account));
    }
    ::endpwent();
    return people;
}

std::vector<UserAccount> peopleOf(const std::string& volume) {
    std::vector<UserAccount> people;
    std::error_code error;
    for (const auto& entry :
         std::filesystem::directory_iterator(joinPath(volume, "Users"), error)) {
        const std::string name = entry.path().filename().string();
        std::error_code ignored;
        if (name == "Shared" || name.starts_with('.') || entry.is_symlink(ignored) ||
            !entry.is_directory(ignored)) {
            continue;
        }
        people.push_back({::geteuid(), name, ""});
    }
    std::ranges::sort(people, {}, &UserAccount::name);
    return people;
}

UserAccount effectiveUser() {
    const auto account = userNumbered(::geteuid());
    const std::string name = account ? account.value().name : std::to_string(::geteuid());
    return {::geteuid(), name, ""};
}

bool isPlainName(const std::string& login) {
    return !login.empty() && login != "." && login != ".." && login.find('/') == std::string::npos;
}

}  // namespace

FoundUsers usersAskedFor(const AskedUsers& asked, const std::string& targetVolume) {
    FoundUsers found;
    const auto add = [&](UserAccount user) {
        const bool isThere = std::ranges::any_of(
            found.users, [&](const UserAccount& other) { return other.name == user.name; });
        if (!isThere) found.users.push_back(std::move(user));
    };
    if (asked.logins.empty() && !asked.everybody) add(effectiveUser());
    for (const std::string& login : asked.logins) {
        const auto account = userNamed(login);
        if (login == effectiveUser().name) {
            add(effectiveUser());
        } else if (!targetVolume.empty() && isPlainName(login)) {
            add({::geteuid(), login, ""});
        } else if (account) {
            add(account.value());
        } else {
            found.unknown = login;
            return found;
        }
    }
    if (asked.everybody) {
        for (UserAccount& user :
             targetVolume.empty() ? peopleOfThisSystem() : peopleOf(targetVolume)) {
            add(std::move(user));
        }
    }
    return found;
}

}  // namespace installer

#include "privileged/system/Accounts.h"

#include <cerrno>
#include <cstddef>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>

#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr std::size_t usualBufferSize = 4096;

/// Calls one of the reentrant look-ups with a buffer that grows until the entry fits, and gives
/// what `taken` makes of the entry while the buffer still holds its texts.
template <class Entry, class LookUp, class Taken>
auto lookedUp(LookUp lookUp, Taken taken) -> Result<decltype(taken(Entry()))> {
    std::vector<char> buffer(usualBufferSize);
    Entry entry = {};
    Entry* found = nullptr;
    int error = 0;
    while ((error = lookUp(&entry, buffer.data(), buffer.size(), &found)) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    if (found != nullptr) return taken(*found);
    return systemError(error != 0 && error != ENOENT ? error : EINVAL);
}

bool isUsableName(std::string_view name) {
    return !name.empty() && name.find('\0') == std::string_view::npos;
}

std::string textOrEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

UserAccount accountOf(const passwd& entry) {
    return {entry.pw_uid, textOrEmpty(entry.pw_name), textOrEmpty(entry.pw_dir), entry.pw_gid};
}

}  // namespace

Result<UserAccount> userNamed(std::string_view name) {
    if (!isUsableName(name)) return systemError(EINVAL);
    const std::string text(name);
    return lookedUp<passwd>(
        [&](passwd* entry, char* buffer, std::size_t size, passwd** found) {
            return getpwnam_r(text.c_str(), entry, buffer, size, found);
        },
        accountOf);
}

Result<UserAccount> userNumbered(uid_t number) {
    return lookedUp<passwd>(
        [number](passwd* entry, char* buffer, std::size_t size, passwd** found) {
            return getpwuid_r(number, entry, buffer, size, found);
        },
        accountOf);
}

Result<gid_t> groupNamed(std::string_view name) {
    if (!isUsableName(name)) return systemError(EINVAL);
    const std::string text(name);
    return lookedUp<group>(
        [&](group* entry, char* buffer, std::size_t size, group** found) {
            return getgrnam_r(text.c_str(), entry, buffer, size, found);
        },
        [](const group& entry) { return entry.gr_gid; });
}

bool isOwnHome(const std::string& folder, const UserAccount& account) {
    struct stat status{};
    if (::stat(folder.c_str(), &status) != 0) return false;
    if (account.number != 0) return status.st_uid == account.number;
    return status.st_uid != 0 || folder == account.home;
}

bool isOwnGroup(gid_t number, uid_t user) {
    const auto account = userNumbered(user);
    if (!account) return false;
    const std::string& login = account.value().name;
    const auto isOwn = lookedUp<group>(
        [number](group* entry, char* buffer, std::size_t size, group** found) {
            return getgrgid_r(number, entry, buffer, size, found);
        },
        [&login](const group& entry) {
            if (textOrEmpty(entry.gr_name) != login) return false;
            for (char** member = entry.gr_mem; member != nullptr && *member != nullptr; ++member) {
                if (*member != login) return false;
            }
            return true;
        });
    return isOwn && isOwn.value();
}

}  // namespace installer

#include "privileged/wall/ProtectedFolders.h"

#include <utility>

#include "foundation/values/SystemFolders.h"
#include "privileged/system/Accounts.h"

namespace installer {

ProtectedFolders::ProtectedFolders(std::string volume, const std::string& home, uid_t user)
    : volume_(std::move(volume)) {
    const auto found = userNumbered(user);
    const UserAccount account = found ? found.value() : UserAccount{user, "", ""};
    for (const std::string& folder : {home, account.home}) {
        if (isOwnHome(folder, account)) homes_.push_back(folder);
    }
    if (!volume_.empty() && !account.name.empty()) homes_.push_back("/Users/" + account.name);
}

bool ProtectedFolders::hold(std::string_view path) const {
    const bool isOnVolume = !volume_.empty() && path.starts_with(volume_) &&
                            (path.size() == volume_.size() || path[volume_.size()] == '/');
    if (!isOnVolume) return isInSystemFolder(path, homes_);
    path.remove_prefix(volume_.size());
    return isInSystemFolder(path.empty() ? "/" : path, homes_);
}

}  // namespace installer

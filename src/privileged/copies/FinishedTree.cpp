#include "privileged/copies/FinishedTree.h"

#include <utility>

#include <fcntl.h>

namespace installer {

void FinishedTree::forget() {
    isKnown_ = false;
    wasJustSeen_ = false;
    place_ = {};
}

void FinishedTree::remember(Place place, const struct stat& status, const CopyTask& task) {
    forget();
    isKnown_ = task.given.has_value() && task.allGiven;
    if (!isKnown_) return;
    place_ = std::move(place);
    status_ = status;
    given_ = *task.given;
    hasAttributes_ = task.hasAttributes;
}

bool FinishedTree::hasOwner(const std::string& path, uid_t owner, gid_t group) const {
    return isKnown_ && given_.owner == owner && given_.group == group && isAt(path);
}

bool FinishedTree::hasMode(const std::string& path, mode_t mode) const {
    return isKnown_ && given_.mode == mode && isAt(path);
}

bool FinishedTree::hasNoAttributes(const std::string& path) const {
    return isKnown_ && !hasAttributes_ && isAt(path);
}

/// The commands for owner and mode come together: one look serves both.
bool FinishedTree::isAt(const std::string& path) const {
    const bool isAtItsPlace = path == place_.path;
    if (std::exchange(wasJustSeen_, false) && isAtItsPlace) return true;
    const bool isSeen = isSeenAt(path);
    wasJustSeen_ = isSeen && isAtItsPlace;
    return isSeen;
}

bool FinishedTree::isSeenAt(const std::string& path) const {
    struct stat now = {};
    const bool isInFolder = place_.folder != nullptr && path == place_.path;
    const int seen =
        isInFolder ? fstatat(place_.folder->get(), place_.name.c_str(), &now, AT_SYMLINK_NOFOLLOW)
                   : lstat(path.c_str(), &now);
    return seen == 0 && now.st_dev == status_.st_dev && now.st_ino == status_.st_ino &&
           now.st_ctim.tv_sec == status_.st_ctim.tv_sec &&
           now.st_ctim.tv_nsec == status_.st_ctim.tv_nsec;
}

}  // namespace installer

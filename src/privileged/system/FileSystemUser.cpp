#include "privileged/system/FileSystemUser.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <grp.h>
#include <sys/fsuid.h>

#include "privileged/system/Accounts.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr gid_t nobodysGroup = 65534;

/// Neither call tells whether it has changed anything; both tell what was before, and -1 changes
/// nothing.
void switchTo(uid_t user, gid_t group) {
    ::setfsgid(group);
    ::setfsuid(user);
    const bool isDone = static_cast<uid_t>(::setfsuid(static_cast<uid_t>(-1))) == user &&
                        static_cast<gid_t>(::setfsgid(static_cast<gid_t>(-1))) == group;
    // To go on with root's rights would open what must stay closed.
    if (!isDone) std::abort();
}

}  // namespace

FileSystemUser::FileSystemUser(uid_t user) : user_(user), group_(nobodysGroup) {
    if (const auto account = userNumbered(user)) group_ = account.value().group;
}

const FileSystemUser* FileSystemUser::rootWhile(const FileSystemUser* other) {
    static const FileSystemUser root(0, 0);
    return other == nullptr ? nullptr : &root;
}

std::error_code FileSystemUser::takeGroups() const {
    const auto account = userNumbered(user_);
    const bool isKnown = account && !account.value().name.empty();
    const int taken =
        isKnown ? ::initgroups(account.value().name.c_str(), group_) : ::setgroups(1, &group_);
    return taken == 0 ? std::error_code() : systemError();
}

ActingAs::ActingAs(const FileSystemUser* user) : isActing_(user != nullptr) {
    if (!isActing_) return;
    userBefore_ = static_cast<uid_t>(::setfsuid(static_cast<uid_t>(-1)));
    groupBefore_ = static_cast<gid_t>(::setfsgid(static_cast<gid_t>(-1)));
    switchTo(user->user(), user->group());
}

ActingAs::~ActingAs() {
    if (isActing_) switchTo(userBefore_, groupBefore_);
}

}  // namespace installer

#include "privileged/system/FileSystemUser.h"

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include <grp.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "privileged/system/Accounts.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

constexpr gid_t nobodysGroup = 65534;

/// The rights to change the identity, which no user but root has by itself.
bool mayChangeIdentity() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> data{};
    if (::syscall(SYS_capget, &header, data.data()) != 0) return false;
    for (const unsigned right : {unsigned{CAP_SETUID}, unsigned{CAP_SETGID}}) {
        data.at(CAP_TO_INDEX(right)).effective |= CAP_TO_MASK(right);
    }
    return ::syscall(SYS_capset, &header, data.data()) == 0;
}

/// The system calls change this thread alone, unlike the library's functions of these names. Every
/// identity is changed, not only the one for file systems: a file system in user space (FUSE) is
/// closed to a process that could become its user and is not.
void switchTo(uid_t user, gid_t group) {
    const bool isDone = ::prctl(PR_SET_KEEPCAPS, 1, 0, 0, 0) == 0 &&
                        (::geteuid() == 0 || mayChangeIdentity()) &&
                        ::syscall(SYS_setresgid, group, group, group) == 0 &&
                        ::syscall(SYS_setresuid, user, user, user) == 0;
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
    userBefore_ = ::geteuid();
    groupBefore_ = ::getegid();
    switchTo(user->user(), user->group());
}

ActingAs::~ActingAs() {
    if (isActing_) switchTo(userBefore_, groupBefore_);
}

}  // namespace installer

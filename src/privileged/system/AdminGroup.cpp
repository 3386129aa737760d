#include "privileged/system/AdminGroup.h"

#include "privileged/system/Accounts.h"

namespace installer {

namespace {

gid_t foundGroup() {
    constexpr gid_t root = 0;
    for (const char* name : {"admin", "sudo", "wheel"}) {
        if (const auto group = groupNamed(name)) return group.value();
    }
    return root;
}

}  // namespace

gid_t administratorsGroup() {
    // A name that does not exist is looked for in every source of groups that the system has.
    static const gid_t group = foundGroup();
    return group;
}

}  // namespace installer

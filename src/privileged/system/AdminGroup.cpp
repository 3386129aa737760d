#include "privileged/system/AdminGroup.h"

#include "privileged/system/Accounts.h"

namespace installer {

gid_t administratorsGroup() {
    constexpr gid_t root = 0;
    for (const char* name : {"admin", "sudo", "wheel"}) {
        if (const auto group = groupNamed(name)) return group.value();
    }
    return root;
}

}  // namespace installer

#pragma once

#include <fstream>
#include <functional>
#include <string>

#include <sched.h>
#include <sys/mount.h>

#include "tests/privileged/trees/Disk.h"

namespace installer::test {

/// Does the work in a child process that sees these accounts and no others. They are lines of
/// /etc/passwd and /etc/group. Needs root.
[[nodiscard]] inline std::string withAccounts(const std::string& users, const std::string& groups,
                                              const std::function<std::string()>& work) {
    return inChild([&]() -> std::string {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", "/etc", "tmpfs", 0, "size=1m,mode=0755") != 0) {
            return "no accounts of its own";
        }
        std::ofstream("/etc/nsswitch.conf") << "passwd: files\ngroup: files\n";
        std::ofstream("/etc/passwd") << users;
        std::ofstream("/etc/group") << groups;
        return work();
    });
}

}  // namespace installer::test

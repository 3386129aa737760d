#include "privileged/system/AdminGroup.h"

#include <cerrno>
#include <string>
#include <vector>

#include <grp.h>

namespace installer {

namespace {

constexpr std::size_t usualBufferSize = 4096;

bool findGroup(const char* name, gid_t& group) {
    std::vector<char> buffer(usualBufferSize);
    struct group entry = {};
    struct group* found = nullptr;
    while (getgrnam_r(name, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    if (found != nullptr) group = found->gr_gid;
    return found != nullptr;
}

}  // namespace

gid_t administratorsGroup() {
    gid_t group = 0;
    for (const char* name : {"admin", "sudo", "wheel"}) {
        if (findGroup(name, group)) break;
    }
    return group;
}

}  // namespace installer

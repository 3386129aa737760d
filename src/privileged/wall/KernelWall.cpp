#include "privileged/wall/KernelWall.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "privileged/files/Location.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

/// A folder that stays as it is.
struct Hole {
    FileDescriptor folder;  ///< below the wall, where the copy of its mount goes
    FileDescriptor mount;   ///< a copy of its mount and of those below it, as they were
    std::string path;       ///< without links
};

std::string failure(std::string_view what) {
    return std::string(what) + ": " + systemError().message();
}

bool isWithin(const std::string& path, const std::string& folder) {
    return path == folder || path.starts_with(folder + "/");
}

/// An invalid descriptor if no request could get there either.
FileDescriptor nearestFolder(std::string path) {
    for (;;) {
        auto folder = openFolder(path, LinkPolicy::trustedOnly);
        if (folder) return std::move(folder).value();
        if (folder.error() != std::errc::no_such_file_or_directory || path == "/") return {};
        path = path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
    }
}

std::string pathOf(const FileDescriptor& folder) {
    const std::string link = "/proc/self/fd/" + std::to_string(folder.get());
    std::array<char, PATH_MAX> path{};
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : "";
}

FileDescriptor copyOfMount(const FileDescriptor& folder) {
    constexpr unsigned flags = OPEN_TREE_CLONE | OPEN_TREE_CLOEXEC;
    return FileDescriptor(static_cast<int>(
        ::syscall(SYS_open_tree, folder.get(), "", AT_EMPTY_PATH | AT_RECURSIVE | flags)));
}

bool putInPlace(const FileDescriptor& mount, const FileDescriptor& folder) {
    return ::syscall(SYS_move_mount, mount.get(), "", folder.get(), "",
                     MOVE_MOUNT_F_EMPTY_PATH | MOVE_MOUNT_T_EMPTY_PATH) == 0;
}

/// None within another: the outer one's copy would hide the inner one's.
std::optional<std::string> addHole(const std::string& folder, std::vector<Hole>& holes) {
    Hole hole;
    hole.folder = nearestFolder(folder);
    if (!hole.folder) return std::nullopt;
    hole.path = pathOf(hole.folder);
    if (!hole.path.starts_with('/')) return "the path of a folder is not known";
    if (hole.path == "/") return "the root is among the folders, or has to hold one of them";
    const auto holdsIt = [&hole](const Hole& other) { return isWithin(hole.path, other.path); };
    if (std::ranges::any_of(holes, holdsIt)) return std::nullopt;
    std::erase_if(holes, [&hole](const Hole& other) { return isWithin(other.path, hole.path); });
    hole.mount = copyOfMount(hole.folder);
    if (!hole.mount) return failure("open_tree");
    holes.push_back(std::move(hole));
    return std::nullopt;
}

/// Changes nothing that can be seen, and tells whether the last step will be allowed.
bool mayPutInPlace(const Hole& hole) {
    const FileDescriptor tried = copyOfMount(hole.folder);
    return tried && putInPlace(tried, hole.folder);
}

bool makeEverythingReadOnly(Devices devices) {
    mount_attr change{};
    change.attr_set = MOUNT_ATTR_RDONLY | MOUNT_ATTR_NOSUID;
    if (devices == Devices::closed) change.attr_set |= MOUNT_ATTR_NODEV;
    return ::syscall(SYS_mount_setattr, AT_FDCWD, "/", AT_RECURSIVE, &change, sizeof change) == 0;
}

std::optional<std::string> takeNamespace() {
    if (::unshare(CLONE_NEWNS) != 0) return failure("unshare");
    // Nothing that happens here shows elsewhere, nor the other way round.
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return failure("mount");
    return std::nullopt;
}

void keepOnly(std::initializer_list<unsigned> kept) {
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> data{};
    for (const unsigned right : kept) {
        auto& part = data.at(CAP_TO_INDEX(right));
        part.permitted |= CAP_TO_MASK(right);
        part.effective |= CAP_TO_MASK(right);
    }
    for (unsigned right = 0; ::prctl(PR_CAPBSET_READ, right, 0, 0, 0) >= 0; ++right) {
        if (std::ranges::find(kept, right) == kept.end()) ::prctl(PR_CAPBSET_DROP, right, 0, 0, 0);
    }
    ::prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_CLEAR_ALL, 0, 0, 0);
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    static_cast<void>(::syscall(SYS_capset, &header, data.data()));
}

}  // namespace

std::optional<std::string> raiseKernelWall(const std::vector<std::string>& folders,
                                           Devices devices) {
    if (auto reason = takeNamespace()) return reason;
    std::vector<Hole> holes;
    for (const std::string& folder : folders) {
        if (auto reason = addHole(folder, holes)) return reason;
    }
    if (!holes.empty() && !mayPutInPlace(holes.front())) return failure("move_mount");
    if (!makeEverythingReadOnly(devices)) return failure("mount_setattr");
    for (const Hole& hole : holes) {
        if (!putInPlace(hole.mount, hole.folder)) return failure("move_mount, below " + hole.path);
    }
    return std::nullopt;
}

void giveUpOtherRights() {
    // The last two are for opening the sources of copies as the user.
    keepOnly({CAP_CHOWN, CAP_DAC_OVERRIDE, CAP_FOWNER, CAP_FSETID, CAP_SETUID, CAP_SETGID});
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

}  // namespace installer

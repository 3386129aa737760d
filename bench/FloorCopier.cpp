// floor-copier SOURCE DESTINATION [keeping]: the least that copying a tree can cost. One process,
// one pass: every file is made, filled by the kernel, given its owner and its mode. No promise
// about what a failure leaves, no times, no attributes: the floor that an installation is compared
// with, not something to install with. With "keeping", files keep their times, and each is filled
// without a name and appears whole: the floor for what an installation promises.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/system/AdminGroup.h"
#include "privileged/system/FileDescriptor.h"

namespace {

using installer::FileDescriptor;

constexpr mode_t installedMode = 0775;
bool isKeeping = false;

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

void finish(int descriptor) {
    static const uid_t owner = ::getuid();
    static const gid_t group = installer::administratorsGroup();
    if (::fchown(descriptor, owner, group) != 0) fail("fchown");
    if (::fchmod(descriptor, installedMode) != 0) fail("fchmod");
}

int newFile(int folder, const char* name) {
    if (isKeeping) return ::openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    return ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
}

void keepTimesAndPublish(int source, int file, int folder, const char* name) {
    struct stat status = {};
    if (::fstat(source, &status) != 0) fail("fstat");
    const std::array<timespec, 2> times = {status.st_atim, status.st_mtim};
    if (::futimens(file, times.data()) != 0) fail("futimens");
    if (::linkat(file, "", folder, name, AT_EMPTY_PATH) != 0) fail("linkat");
}

void copyFile(int sourceFolder, int destinationFolder, const char* name) {
    const FileDescriptor source(::openat(sourceFolder, name, O_RDONLY | O_CLOEXEC));
    const FileDescriptor destination(newFile(destinationFolder, name));
    if (!source || !destination) fail(name);
    constexpr std::size_t most = std::size_t{1} << 30;
    ssize_t copied = 0;
    do {
        copied = ::copy_file_range(source.get(), nullptr, destination.get(), nullptr, most, 0);
        if (copied < 0) fail("copy_file_range");
    } while (copied > 0);
    finish(destination.get());
    if (isKeeping) {
        keepTimesAndPublish(source.get(), destination.get(), destinationFolder, name);
    }
}

void copyFolder(int source, int destination) {
    DIR* entries = ::fdopendir(source);
    if (entries == nullptr) fail("fdopendir");
    while (const dirent* entry = ::readdir(entries)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (entry->d_type != DT_DIR) {
            copyFile(source, destination, entry->d_name);
            continue;
        }
        if (::mkdirat(destination, entry->d_name, installedMode) != 0) fail("mkdirat");
        const FileDescriptor folder(
            ::openat(destination, entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        copyFolder(::openat(source, entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC),
                   folder.get());
    }
    ::closedir(entries);
    finish(destination);
}

}  // namespace

int main(int argc, char** argv) {
    isKeeping = argc == 4 && std::string_view(argv[3]) == "keeping";
    if (argc != 3 && !isKeeping) {
        std::fputs("usage: floor-copier SOURCE DESTINATION [keeping]\n", stderr);
        return 2;
    }
    if (::mkdir(argv[2], installedMode) != 0) fail(argv[2]);
    const FileDescriptor destination(::open(argv[2], O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    copyFolder(::open(argv[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC), destination.get());
    return 0;
}

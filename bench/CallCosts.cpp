// call-costs FOLDER: the processor time of each system call that one small item takes, in
// microseconds, in an empty folder of the file system that is to be measured.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "privileged/system/FileDescriptor.h"

namespace {

using installer::FileDescriptor;

constexpr int times = 5000;
constexpr std::size_t itemSize = 10 << 10;

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

double processorMicroseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) * 1e-3;
}

void measure(const char* name, const std::function<bool(int number)>& call) {
    const double before = processorMicroseconds();
    for (int number = 0; number < times; ++number) {
        if (!call(number)) fail(name);
    }
    std::printf("%-32s %.2f\n", name, (processorMicroseconds() - before) / times);
}

std::string numbered(const char* beginning, int number) {
    return beginning + std::to_string(number);
}

void measureLooks(int folder, int item, const std::string& path) {
    struct stat status{};
    std::array<char, 1024> names{};
    measure("look by the whole path", [&](int) { return ::lstat(path.c_str(), &status) == 0; });
    measure("look in an open folder",
            [&](int) { return ::fstatat(folder, "item", &status, AT_SYMLINK_NOFOLLOW) == 0; });
    measure("look that finds nothing",
            [&](int) { return ::fstatat(folder, "none", &status, AT_SYMLINK_NOFOLLOW) != 0; });
    measure("look at an open file", [&](int) { return ::fstat(item, &status) == 0; });
    measure("list of attributes",
            [&](int) { return ::flistxattr(item, names.data(), names.size()) >= 0; });
    measure("open and close", [&](int) {
        return static_cast<bool>(FileDescriptor(::openat(folder, "item", O_RDONLY | O_CLOEXEC)));
    });
}

void measureChanges(int folder, int item) {
    const std::array<timespec, 2> past = {};
    measure("owner", [&](int) { return ::fchown(item, ::getuid(), ::getgid()) == 0; });
    measure("mode", [&](int number) { return ::fchmod(item, number % 2 ? 0775 : 0600) == 0; });
    measure("times", [&](int) { return ::futimens(item, past.data()) == 0; });
    measure("new file with a name", [&](int number) {
        const std::string name = numbered("a", number);
        return static_cast<bool>(FileDescriptor(
            ::openat(folder, name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600)));
    });
    measure("new file that gets one later", [&](int number) {
        const FileDescriptor file(::openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
        const std::string name = numbered("b", number);
        return ::linkat(file.get(), "", folder, name.c_str(), AT_EMPTY_PATH) == 0;
    });
    measure("10 KiB, with open and close", [&](int number) {
        const FileDescriptor file(
            ::openat(folder, numbered("a", number).c_str(), O_WRONLY | O_CLOEXEC));
        off_t from = 0;
        return ::copy_file_range(item, &from, file.get(), nullptr, itemSize, 0) > 0;
    });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: call-costs FOLDER\n");
        return 2;
    }
    const FileDescriptor folder(::open(argv[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const FileDescriptor item(
        ::openat(folder.get(), "item", O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600));
    if (!folder || !item) fail(argv[1]);
    const std::string contents(itemSize, 'x');
    if (::write(item.get(), contents.data(), contents.size()) < 0) fail("write");
    measureLooks(folder.get(), item.get(), argv[1]);
    measureChanges(folder.get(), item.get());
    return 0;
}

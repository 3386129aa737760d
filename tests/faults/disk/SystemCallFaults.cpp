#include "tests/faults/disk/SystemCallFaults.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace installer::test {

namespace {

/// Many times what any run needs.
constexpr std::size_t mostCalls = 200000;

struct Gate {
    bool isArmed = false;
    bool kernelCopies = true;
    SystemCallPlan plan;
    std::function<void()> onHit;
    std::vector<SystemCall> calls;
    bool diskIsFull = false;  ///< after a short write

    bool fails(const SystemCall& call) {
        calls.push_back(call);
        if (calls.size() > mostCalls) {
            std::fputs("the run does not end\n", stderr);
            std::abort();
        }
        const std::size_t place = calls.size();
        const bool isPlanned = plan.place != 0 && place >= plan.place;
        const bool hit =
            isPlanned && (place == plan.place || plan.fromThenOn || (diskIsFull && call.writes));
        if (hit) onHit();
        return hit;
    }
};

Gate gate;

enum class Does { lookOnly, change };

template <class Result, class Work>
Result guarded(const char* name, Does does, const Work& work) {
    if (!gate.isArmed) return work();
    const bool changes = does == Does::change;
    if (!gate.fails({name, changes, false})) return work();
    if (changes && gate.plan.effect == SystemCallPlan::Effect::done) static_cast<void>(work());
    errno = gate.plan.error;
    return static_cast<Result>(-1);
}

template <class Work>
ssize_t guardedWrite(const char* name, std::size_t size, const Work& work) {
    if (!gate.isArmed) return work(size);
    if (!gate.fails({name, true, true})) return work(size);
    const bool isShort = gate.plan.effect == SystemCallPlan::Effect::shortWrite;
    if (isShort && !std::exchange(gate.diskIsFull, true) && size > 1) return work(size / 2);
    errno = gate.plan.error;
    return -1;
}

}  // namespace

void system_call_faults::arm(const SystemCallPlan& plan, KernelCopies kernelCopies,
                             std::function<void()> onHit) {
    gate = {};
    gate.plan = plan;
    gate.kernelCopies = kernelCopies == KernelCopies::yes;
    gate.onHit = std::move(onHit);
    gate.isArmed = true;
}

std::vector<SystemCall> system_call_faults::disarm() {
    gate.isArmed = false;
    return std::move(gate.calls);
}

}  // namespace installer::test

// The linker sends each call here instead of to the C library, which it calls __real_NAME.

using installer::test::Does;
using installer::test::gate;
using installer::test::guarded;
using installer::test::guardedWrite;

#define REDIRECT(type, name, does, parameters, arguments)                           \
    type __real_##name parameters;                                                  \
    type __wrap_##name parameters;                                                  \
    type __wrap_##name parameters {                                                 \
        return guarded<type>(#name, does, [&] { return __real_##name arguments; }); \
    }

extern "C" {

int __real_openat(int parent, const char* name, int flags, ...);
int __wrap_openat(int parent, const char* name, int flags, ...);
int __wrap_openat(int parent, const char* name, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    const Does does = (flags & O_CREAT) != 0 ? Does::change : Does::lookOnly;
    return guarded<int>("openat", does, [&] { return __real_openat(parent, name, flags, mode); });
}

int __real_open(const char* name, int flags, ...);
int __wrap_open(const char* name, int flags, ...);
int __wrap_open(const char* name, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return guarded<int>("open", Does::lookOnly, [&] { return __real_open(name, flags, mode); });
}

// Of those that are called this way, openat2 and fchmodat2 are about the disk. They take four
// arguments.
long __real_syscall(long number, ...);
long __wrap_syscall(long number, ...);
long __wrap_syscall(long number, ...) {
    va_list rest;
    va_start(rest, number);
    const long first = va_arg(rest, long);
    const long second = va_arg(rest, long);
    const long third = va_arg(rest, long);
    const long fourth = va_arg(rest, long);
    va_end(rest);
    const auto work = [&] { return __real_syscall(number, first, second, third, fourth); };
    constexpr long fchmodat2 = 452;
    const bool isAboutTheDisk = number == SYS_openat2 || number == fchmodat2;
    return isAboutTheDisk ? guarded<long>("syscall", Does::lookOnly, work) : work();
}

ssize_t __real_write(int file, const void* bytes, size_t size);
ssize_t __wrap_write(int file, const void* bytes, size_t size);
ssize_t __wrap_write(int file, const void* bytes, size_t size) {
    return guardedWrite("write", size,
                        [&](std::size_t some) { return __real_write(file, bytes, some); });
}

ssize_t __real_pwrite(int file, const void* bytes, size_t size, off_t place);
ssize_t __wrap_pwrite(int file, const void* bytes, size_t size, off_t place);
ssize_t __wrap_pwrite(int file, const void* bytes, size_t size, off_t place) {
    return guardedWrite("pwrite", size,
                        [&](std::size_t some) { return __real_pwrite(file, bytes, some, place); });
}

ssize_t __real_copy_file_range(int from, off_t* fromPlace, int to, off_t* toPlace, size_t size,
                               unsigned flags);
ssize_t __wrap_copy_file_range(int from, off_t* fromPlace, int to, off_t* toPlace, size_t size,
                               unsigned flags);
ssize_t __wrap_copy_file_range(int from, off_t* fromPlace, int to, off_t* toPlace, size_t size,
                               unsigned flags) {
    if (gate.isArmed && !gate.kernelCopies) {
        errno = EXDEV;
        return -1;
    }
    return guardedWrite("copy_file_range", size, [&](std::size_t some) {
        return __real_copy_file_range(from, fromPlace, to, toPlace, some, flags);
    });
}

REDIRECT(int, mkdirat, Does::change, (int parent, const char* name, mode_t mode),
         (parent, name, mode))
REDIRECT(int, unlinkat, Does::change, (int parent, const char* name, int flags),
         (parent, name, flags))
REDIRECT(int, renameat, Does::change, (int from, const char* name, int to, const char* newName),
         (from, name, to, newName))
REDIRECT(int, renameat2, Does::change,
         (int from, const char* name, int to, const char* newName, unsigned flags),
         (from, name, to, newName, flags))
REDIRECT(int, linkat, Does::change,
         (int from, const char* name, int to, const char* newName, int flags),
         (from, name, to, newName, flags))
REDIRECT(int, symlinkat, Does::change, (const char* target, int parent, const char* name),
         (target, parent, name))
REDIRECT(int, fchown, Does::change, (int file, uid_t owner, gid_t group), (file, owner, group))
REDIRECT(int, fchownat, Does::change,
         (int parent, const char* name, uid_t owner, gid_t group, int flags),
         (parent, name, owner, group, flags))
REDIRECT(int, fchmod, Does::change, (int file, mode_t mode), (file, mode))
REDIRECT(int, fchmodat, Does::change, (int parent, const char* name, mode_t mode, int flags),
         (parent, name, mode, flags))
REDIRECT(int, futimens, Does::change, (int file, const struct timespec* times), (file, times))
REDIRECT(int, utimensat, Does::change,
         (int parent, const char* name, const struct timespec* times, int flags),
         (parent, name, times, flags))
REDIRECT(int, ftruncate, Does::change, (int file, off_t size), (file, size))
REDIRECT(int, fsetxattr, Does::change,
         (int file, const char* name, const void* value, size_t size, int flags),
         (file, name, value, size, flags))
REDIRECT(int, fremovexattr, Does::change, (int file, const char* name), (file, name))
REDIRECT(int, flock, Does::change, (int file, int operation), (file, operation))
REDIRECT(ssize_t, flistxattr, Does::lookOnly, (int file, char* names, size_t size),
         (file, names, size))
REDIRECT(ssize_t, fgetxattr, Does::lookOnly, (int file, const char* name, void* value, size_t size),
         (file, name, value, size))
REDIRECT(ssize_t, readlinkat, Does::lookOnly,
         (int parent, const char* name, char* target, size_t size), (parent, name, target, size))
REDIRECT(int, fstatat, Does::lookOnly,
         (int parent, const char* name, struct stat* status, int flags),
         (parent, name, status, flags))
REDIRECT(int, fstat, Does::lookOnly, (int file, struct stat* status), (file, status))
REDIRECT(int, lstat, Does::lookOnly, (const char* name, struct stat* status), (name, status))
REDIRECT(int, statx, Does::lookOnly,
         (int parent, const char* name, int flags, unsigned mask, struct statx* status),
         (parent, name, flags, mask, status))
REDIRECT(ssize_t, getdents64, Does::lookOnly, (int file, void* entries, size_t size),
         (file, entries, size))
REDIRECT(off_t, lseek, Does::lookOnly, (int file, off_t place, int whence), (file, place, whence))
REDIRECT(ssize_t, read, Does::lookOnly, (int file, void* bytes, size_t size), (file, bytes, size))
REDIRECT(ssize_t, pread, Does::lookOnly, (int file, void* bytes, size_t size, off_t place),
         (file, bytes, size, place))

}  // extern "C"

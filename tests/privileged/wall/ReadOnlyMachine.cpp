#include "tests/privileged/wall/ReadOnlyMachine.h"

#include <array>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace installer::test {
namespace {

bool makeTheMachineReadOnly() {
    if (::unshare(CLONE_NEWNS) != 0) return false;
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    if (::mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly) != 0) return false;
    for (const char* folder : {playground, canaryFolder}) {
        if (::mount("none", folder, "tmpfs", 0, "size=16m,mode=0755") != 0) return false;
    }
    return true;
}

}  // namespace

std::string onReadOnlyMachine(const std::function<std::string()>& work) {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string said = makeTheMachineReadOnly() ? work() : "no read-only machine";
        static_cast<void>(!::write(pipe[1], said.data(), said.size()));
        ::_exit(0);
    }
    ::close(pipe[1]);
    std::string said;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::read(pipe[0], buffer.data(), buffer.size())) > 0) {
        said.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(pipe[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) return "killed by signal " + std::to_string(WTERMSIG(status));
    return WEXITSTATUS(status) == 0 ? said : "ended with " + std::to_string(WEXITSTATUS(status));
}

}  // namespace installer::test

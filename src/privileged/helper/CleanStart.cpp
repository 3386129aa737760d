#include "privileged/helper/CleanStart.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace installer {
namespace {

void openMissingStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // The lowest free number is the one that open gives.
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) != descriptor)
            ::_exit(1);
    }
}

void closeOtherDescriptors() {
    if (::close_range(STDERR_FILENO + 1, ~0U, 0) != 0) ::_exit(1);
}

void emptyEnvironment() {
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        std::memset(*variable, 0, std::strlen(*variable));
    }
    ::clearenv();
}

void settleSignals() {
    for (int number = 1; number <= SIGRTMAX; ++number) ::signal(number, SIG_DFL);
    for (const int ignored :
         {SIGPIPE, SIGINT, SIGQUIT, SIGHUP, SIGTSTP, SIGTTIN, SIGTTOU, SIGXFSZ, SIGXCPU}) {
        ::signal(ignored, SIG_IGN);
    }
    // The database refresh is never waited for, and must not stay as a zombie.
    ::signal(SIGCHLD, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Timers survive execve, so the caller's could end this process.
void stopTimers() {
    constexpr itimerval none{};
    ::setitimer(ITIMER_REAL, &none, nullptr);
    ::setitimer(ITIMER_VIRTUAL, &none, nullptr);
    ::setitimer(ITIMER_PROF, &none, nullptr);
}

/// If root may not raise the hard limit, the soft limit is raised to it.
template <class Resource>
void raiseLimit(Resource resource, rlim_t wanted) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) return;
    const rlimit raised{std::max(limit.rlim_cur, wanted), std::max(limit.rlim_max, wanted)};
    if (::setrlimit(resource, &raised) == 0) return;
    limit.rlim_cur = limit.rlim_max;
    static_cast<void>(::setrlimit(resource, &limit));
}

void settleLimits() {
    constexpr rlim_t enoughDescriptors = 1024;
    raiseLimit(RLIMIT_NOFILE, enoughDescriptors);
    for (const auto resource : {RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_AS, RLIMIT_DATA, RLIMIT_STACK}) {
        raiseLimit(resource, RLIM_INFINITY);
    }
    // A core dump could hold what root has read.
    constexpr rlimit nothing{};
    static_cast<void>(::setrlimit(RLIMIT_CORE, &nothing));
}

}  // namespace

void cleanStart() {
    stopTimers();
    settleLimits();
    openMissingStandardDescriptors();
    closeOtherDescriptors();
    emptyEnvironment();
    settleSignals();
    ::umask(022);
    if (::chdir("/") != 0) ::_exit(1);
}

}  // namespace installer

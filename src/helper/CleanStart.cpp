#include "helper/CleanStart.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
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
    for (const int ignored : {SIGPIPE, SIGINT, SIGQUIT, SIGHUP, SIGTSTP, SIGTTIN, SIGTTOU}) {
        ::signal(ignored, SIG_IGN);
    }
    // Nobody waits for the refresh that is left to finish.
    ::signal(SIGCHLD, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

void cleanStart() {
    openMissingStandardDescriptors();
    closeOtherDescriptors();
    emptyEnvironment();
    settleSignals();
    ::umask(022);
    if (::chdir("/") != 0) ::_exit(1);
}

}  // namespace installer

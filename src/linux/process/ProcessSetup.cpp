#include "linux/process/ProcessSetup.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace installer {

void prepareProcess() {
    int descriptor = ::open("/dev/null", O_RDWR);
    // The lowest free descriptor is the one given, so this fills every gap below 3.
    while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::dup(descriptor);
    if (descriptor >= 0) ::close(descriptor);
    std::signal(SIGPIPE, SIG_IGN);
    // A file that is larger than the user's limit fails, as one that is larger than the disk does.
    std::signal(SIGXFSZ, SIG_IGN);
    // Inherited as ignored, it would let the kernel discard a child's end before it is waited for.
    std::signal(SIGCHLD, SIG_DFL);
}

}  // namespace installer

#include "tools/installerctl/machine/RunLock.h"

#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace installer {

RunLock::RunLock(const std::string& diskRoot, Deadline deadline)
    : root_(::open(diskRoot.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (root_) {
        isHeld_ = ::flock(root_.get(), LOCK_EX | LOCK_NB) == 0;
        if (isHeld_ || std::chrono::steady_clock::now() >= deadline) return;
        std::this_thread::sleep_for(pauseBetweenLooks);
    }
}

}  // namespace installer

#include "linux/process/EndSignals.h"

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "ports/DescriptorWatcher.h"

namespace installer {

namespace {

constexpr std::array endSignals = {SIGTERM, SIGINT, SIGHUP};

/// All that a signal handler can reach.
volatile sig_atomic_t noticeDescriptor = -1;

void noticeSignal(int /*number*/) {
    const int before = errno;
    for (const int number : endSignals) ::signal(number, SIG_DFL);
    const char notice = 1;
    if (::write(noticeDescriptor, &notice, 1) < 0) errno = before;
    errno = before;
}

/// A signal that the parent ignores, as nohup does, stays ignored.
void handle(int number) {
    struct sigaction action{};
    if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = noticeSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

}  // namespace

EndSignals::EndSignals(DescriptorWatcher& watcher, std::function<void()> whenAskedToEnd) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd_ = FileDescriptor(ends[0]);
    writeEnd_ = FileDescriptor(ends[1]);
    watch_ = watcher.watch(ends[0], [descriptor = ends[0], ended = std::move(whenAskedToEnd)] {
        char notice = 0;
        if (::read(descriptor, &notice, 1) == 1) ended();
    });
    noticeDescriptor = ends[1];
    for (const int number : endSignals) handle(number);
}

EndSignals::~EndSignals() {
    for (const int number : endSignals) {
        struct sigaction action{};
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == noticeSignal) {
            ::signal(number, SIG_DFL);
        }
    }
    noticeDescriptor = -1;
    watch_.cancel();
}

}  // namespace installer

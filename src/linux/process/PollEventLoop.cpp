#include "linux/process/PollEventLoop.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <poll.h>

namespace installer {

void PollEventLoop::runUntilNow() {
    if (!sources_->empty()) turn(0);
}

bool PollEventLoop::runOnce() {
    if (sources_->empty()) return false;
    turn(-1);
    return true;
}

Subscription PollEventLoop::watch(int descriptor, std::function<void()> whenReadable) {
    const std::uint64_t source = ++lastSource_;
    sources_->emplace(source, Source{descriptor, std::move(whenReadable)});
    return Subscription([sources = std::weak_ptr<Sources>(sources_), source] {
        if (const auto remaining = sources.lock()) remaining->erase(source);
    });
}

void PollEventLoop::turn(int timeoutInMilliseconds) {
    std::vector<pollfd> descriptors;
    std::vector<std::uint64_t> polled;
    for (const auto& [source, watched] : *sources_) {
        descriptors.push_back({watched.descriptor, POLLIN, 0});
        polled.push_back(source);
    }
    int ready = 0;
    do {
        ready = ::poll(descriptors.data(), descriptors.size(), timeoutInMilliseconds);
    } while (ready < 0 && errno == EINTR);

    // A callback may turn the loop itself, and may end this loop's life: nothing of this object
    // but the shared sources is used from here on.
    const std::shared_ptr<Sources> sources = sources_;
    const std::uint64_t thisTurn = ++sources->turns;
    for (std::size_t index = 0; ready > 0 && index < polled.size(); ++index) {
        // A turn within this one may have read what was ready here; the next turn looks again.
        if (sources->turns != thisTurn) break;
        if (descriptors[index].revents == 0) continue;
        const auto found = sources->find(polled[index]);
        if (found == sources->end()) continue;
        const std::function<void()> whenReadable = found->second.whenReadable;
        whenReadable();
    }
}

}  // namespace installer

#pragma once

#include <cerrno>
#include <chrono>
#include <functional>

#include <poll.h>

namespace installer {

/// How often a wait lets its caller do something: often enough for a window to stay alive.
inline constexpr std::chrono::milliseconds wakeInterval{20};

/// Waits until the descriptor can be read, is at its end or is broken, and calls `whileWaiting`
/// about every `wakeInterval` until then.
inline void awaitReadable(int descriptor, const std::function<void()>& whileWaiting) {
    for (;;) {
        pollfd polled{descriptor, POLLIN, 0};
        const int ready = ::poll(&polled, 1, static_cast<int>(wakeInterval.count()));
        if (ready > 0 || (ready < 0 && errno != EINTR)) return;
        if (ready == 0) whileWaiting();
    }
}

}  // namespace installer

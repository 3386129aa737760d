#pragma once

#include <atomic>
#include <cerrno>
#include <functional>
#include <utility>

#include <signal.h>
#include <sys/time.h>

namespace installer::test {

/// Interrupts the system calls of this process again and again, and does something each time. The
/// calls are not restarted: they fail with EINTR, or do a part of their work. What is done gets the
/// number of the signal, counted from 1, and may only call what a signal handler may.
class SignalsThatInterrupt {
  public:
    explicit SignalsThatInterrupt(std::function<void(int)> onSignal) {
        count_ = 0;
        onSignal_ = std::move(onSignal);
        struct sigaction action = {};
        action.sa_handler = [](int) {
            const int error = errno;
            onSignal_(++count_);
            errno = error;
        };
        ::sigaction(SIGALRM, &action, &before_);
        set({0, 1000});
    }
    ~SignalsThatInterrupt() {
        set({0, 0});
        ::sigaction(SIGALRM, &before_, nullptr);
    }
    SignalsThatInterrupt(const SignalsThatInterrupt&) = delete;
    SignalsThatInterrupt& operator=(const SignalsThatInterrupt&) = delete;

  private:
    static void set(timeval interval) {
        const itimerval timer{interval, interval};
        ::setitimer(ITIMER_REAL, &timer, nullptr);
    }

    inline static std::function<void(int)> onSignal_;
    inline static std::atomic<int> count_ = 0;
    struct sigaction before_ = {};
};

}  // namespace installer::test

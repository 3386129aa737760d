#pragma once

#include <signal.h>

namespace installer {

/// Blocks every signal that can be blocked. One that arrives meanwhile takes effect when this
/// object is destroyed, or the outermost one where they are nested.
class HeldSignals {
  public:
    HeldSignals() {
        if (depth++ > 0) return;
        sigset_t all;
        sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, &before_);
    }
    ~HeldSignals() {
        if (--depth == 0) ::sigprocmask(SIG_SETMASK, &before_, nullptr);
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    /// Whether a signal has arrived meanwhile.
    [[nodiscard]] static bool isOneWaiting() {
        sigset_t waiting;
        return ::sigpending(&waiting) == 0 && sigisemptyset(&waiting) == 0;
    }

  private:
    static thread_local inline int depth = 0;
    sigset_t before_{};
};

}  // namespace installer

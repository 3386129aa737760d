#pragma once

#include <signal.h>

namespace installer {

/// Blocks every signal that can be blocked. One that arrives meanwhile takes effect when this
/// object is destroyed.
class HeldSignals {
  public:
    HeldSignals() {
        sigset_t all;
        sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, &before_);
    }
    ~HeldSignals() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

  private:
    sigset_t before_{};
};

}  // namespace installer

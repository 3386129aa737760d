#pragma once

#include <signal.h>

namespace installer {

/// As long as it lives, no signal ends this process that can be kept from it; one that comes
/// meanwhile does so afterwards.
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

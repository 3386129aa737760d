#pragma once

#include <functional>

#include "foundation/observers/Subscription.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

class DescriptorWatcher;

/// Turns the first SIGTERM, SIGINT or SIGHUP into a call while the event loop turns. The second one
/// ends the process as usual, so that a user can end an installer that takes too long. At most one
/// object of this class lives at a time; the destructor restores what the signals did before.
class EndSignals {
  public:
    /// `watcher` outlives this object.
    EndSignals(DescriptorWatcher& watcher, std::function<void()> whenAskedToEnd);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

  private:
    FileDescriptor readEnd_;
    FileDescriptor writeEnd_;
    Subscription watch_;
};

}  // namespace installer

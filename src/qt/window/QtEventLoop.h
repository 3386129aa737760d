#pragma once

#include <QObject>
#include <functional>

#include "ports/DescriptorWatcher.h"
#include "ports/EventLoop.h"

namespace installer {

/// The toolkit's event loop. A window's input and painting use it as well. Needs the application
/// object, and belongs to its thread. Subscriptions may outlive it.
class QtEventLoop final : public EventLoop, public DescriptorWatcher {
  public:
    /// Handles the user's input too. Returns after a limited number of turns, even if a source is
    /// always ready.
    void runUntilNow() override;
    /// Always true: a window can be closed at any time.
    [[nodiscard]] bool runOnce() override;
    [[nodiscard]] Subscription watch(int descriptor, std::function<void()> whenReadable) override;

  private:
    QObject notifiers_;
};

}  // namespace installer

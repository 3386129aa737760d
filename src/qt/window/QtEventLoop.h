#pragma once

#include <QObject>
#include <functional>

#include "ports/DescriptorWatcher.h"
#include "ports/EventLoop.h"

namespace installer {

/// The toolkit's event loop, which a window's input and painting go through as well. Needs the
/// application object, and belongs to its thread. Handles may outlive it.
class QtEventLoop final : public EventLoop, public DescriptorWatcher {
  public:
    /// The user's input is handled too. A source that never runs dry is left after some turns.
    void runUntilNow() override;
    /// Always true: a window can be closed at any time.
    [[nodiscard]] bool runOnce() override;
    [[nodiscard]] Subscription watch(int descriptor, std::function<void()> whenReadable) override;

  private:
    QObject notifiers_;
};

}  // namespace installer

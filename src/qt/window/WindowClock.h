#pragma once

#include <QPointer>

#include "ports/Clock.h"
#include "qt/window/WaitingWindow.h"

namespace installer {

/// A clock for a process with a window. Who waits before there is a window, as the search for hosts
/// does, lets the user look at an empty screen: a plain window is shown meanwhile. Input waits, and
/// so do notifications. Only the toolkit's own thread may sleep.
class WindowClock final : public Clock {
  public:
    ~WindowClock() override;

    void sleep(std::chrono::microseconds duration) override;
    [[nodiscard]] std::chrono::nanoseconds now() const override;

  private:
    /// Deletes itself when the application shows a window.
    QPointer<WaitingWindow> waiting_;
};

}  // namespace installer

#pragma once

namespace installer {

/// The application's event loop, as far as the core turns it itself.
class EventLoop {
  public:
    virtual ~EventLoop() = default;

    /// Handles what is waiting now and returns at once, so that the window shows what changed.
    virtual void runUntilNow() = 0;

    /// Waits, with no time limit, until something happens, handles it and returns true. False, at
    /// once, when the loop has no source that could ever make something happen.
    [[nodiscard]] virtual bool runOnce() = 0;
};

}  // namespace installer

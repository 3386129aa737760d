#pragma once

#include <functional>

#include "ports/EventLoop.h"
#include "tests/ports/Adapter.h"

namespace installer::test {

/// An event loop in whose world one thing can happen, again and again.
class EventLoopScene {
  public:
    virtual ~EventLoopScene() = default;
    [[nodiscard]] virtual EventLoop& loop() = 0;
    /// From now on it can happen. The loop calls `handler` each time.
    virtual void addSource(std::function<void()> handler) = 0;
    virtual void removeSource() = 0;
    /// It happens: now, or while the loop waits for it.
    virtual void happen() = 0;
    virtual void happenLater() = 0;
};

/// What every event loop promises. An implementation joins with INSTANTIATE_TEST_SUITE_P
/// (`EventLoopWithoutWindowContractTest.cpp`, `window/WindowAdapters.cpp`).
class EventLoopContract : public Contract<EventLoopScene> {
  protected:
    void addSource() {
        scene_->addSource([this] { ++handled_; });
    }

    int handled_ = 0;
};

}  // namespace installer::test

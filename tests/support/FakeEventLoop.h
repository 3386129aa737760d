#pragma once

#include <deque>
#include <functional>

#include "ports/EventLoop.h"

namespace installer::test {

/// An event loop in which happens what a test puts into it.
class FakeEventLoop : public EventLoop {
  public:
    int turns = 0;                     ///< of the turns that did not wait
    std::function<void()> duringTurn;  ///< called in each of these

    /// What has happened and is not handled yet.
    std::deque<std::function<void()>> waiting;
    /// What is going to happen: one after the other, whenever the loop waits.
    std::deque<std::function<void()>> coming;

    void runUntilNow() override;
    bool runOnce() override;

  private:
    void handleWaiting();
};

}  // namespace installer::test

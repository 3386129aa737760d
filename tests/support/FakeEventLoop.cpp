#include "tests/support/FakeEventLoop.h"

#include <utility>

namespace installer::test {

void FakeEventLoop::runUntilNow() {
    ++turns;
    if (duringTurn) duringTurn();
    handleWaiting();
}

bool FakeEventLoop::runOnce() {
    if (!waiting.empty()) {
        handleWaiting();
        return true;
    }
    if (coming.empty()) return false;
    const auto happening = std::move(coming.front());
    coming.pop_front();
    happening();
    return true;
}

/// What is added meanwhile waits for the next turn.
void FakeEventLoop::handleWaiting() {
    for (const auto& handler : std::exchange(waiting, {})) handler();
}

}  // namespace installer::test

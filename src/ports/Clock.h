#pragma once

#include <chrono>

namespace installer {

/// Waiting and measuring, so that tests of a rule that does so need not wait.
class Clock {
  public:
    virtual ~Clock() = default;

    /// Blocks the caller for at least that long.
    virtual void sleep(std::chrono::microseconds duration) = 0;

    /// The time that has passed since some moment of the past. Never goes back; passes with a
    /// sleep.
    [[nodiscard]] virtual std::chrono::nanoseconds now() const = 0;
};

}  // namespace installer

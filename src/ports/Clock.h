#pragma once

#include <chrono>

namespace installer {

/// Waiting, so that tests of a rule that waits need not.
class Clock {
  public:
    virtual ~Clock() = default;

    /// Blocks the caller for at least that long.
    virtual void sleep(std::chrono::microseconds duration) = 0;
};

}  // namespace installer

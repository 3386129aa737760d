#pragma once

#include <functional>

namespace installer {

/// Threads that do pieces of work. Whoever hands pieces over knows when they are done.
class Workers {
  public:
    virtual ~Workers() = default;

    /// Hands over a piece. It runs once, on a thread of the workers' or in a call of `runOne`.
    virtual void add(std::function<void()> piece) = 0;

    /// Runs a piece that nobody has begun; false if there is none.
    [[nodiscard]] virtual bool runOne() = 0;
};

}  // namespace installer

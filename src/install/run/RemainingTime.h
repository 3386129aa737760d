#pragma once

#include <chrono>
#include <optional>

namespace installer {

/// How long a run will still take, judged by how long its work has taken so far. For people: it is
/// not told before it is known, it is rounded, and it never grows by jumps.
class RemainingTime {
  public:
    using Time = std::chrono::nanoseconds;

    void begin();

    /// So much of the work, from 0 to 1, is done at that moment. To be told when the fraction has
    /// grown. Time in which nothing grows, such as the time of a question, counts one second only.
    void update(double fraction, Time now);

    /// Rounded up: to whole minutes above one and a half, to tens of seconds below, to five seconds
    /// at the end. nullopt until enough of the work is done.
    [[nodiscard]] std::optional<std::chrono::seconds> shown() const { return shown_; }

  private:
    void show(Time left);

    std::optional<Time> last_;
    Time worked_{0};
    std::optional<Time> left_;
    std::optional<std::chrono::seconds> shown_;
};

}  // namespace installer

#pragma once

#include <chrono>
#include <functional>
#include <ostream>
#include <string>

namespace installer {

/// A line about work that goes on, for somebody at a terminal: appears if the work takes long, is
/// written over from time to time, and is wiped away at the end.
class LiveLine {
  public:
    using Clock = std::chrono::steady_clock;

    /// Where the line is shown, and the time that it goes by. The stream outlives the line.
    struct Place {
        std::ostream* terminal;  ///< null if nobody would see it
        std::function<Clock::time_point()> now;
    };
    /// Standard error, if that is a terminal, and the real time.
    [[nodiscard]] static Place standardError();

    /// The work begins now.
    explicit LiveLine(Place place);
    ~LiveLine();
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;

    /// Whether it is time to show something: not before half a second, then ten times a second.
    [[nodiscard]] bool isDue() const;
    /// Shows the text, which is one line, in place of the one before.
    void show(const std::string& text);
    /// How long the work has taken, in seconds.
    [[nodiscard]] double seconds() const;

  private:
    Place place_;
    bool isShown_ = false;
    Clock::time_point start_;
    Clock::time_point lastShown_;
};

}  // namespace installer

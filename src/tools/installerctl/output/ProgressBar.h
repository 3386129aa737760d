#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

#include "ports/window/View.h"

namespace installer {

/// A bar on standard error, if that is a terminal and the work takes long enough to need one: how
/// much is done, how fast, and how long it will take.
class ProgressBar final : public ProgressIndicator {
  public:
    using Clock = std::chrono::steady_clock;

    /// Where the bar is shown, and the time that it goes by. The stream outlives the bar.
    struct Place {
        std::ostream* terminal;  ///< null if nobody would see it
        std::function<Clock::time_point()> now;
    };
    /// Standard error, if that is a terminal, and the real time.
    [[nodiscard]] static Place standardError();

    /// `what` stands before the bar; `bytes` is all that there is to do, 0 if it is not known.
    ProgressBar(std::string what, std::uint64_t bytes, Place place = standardError());
    ~ProgressBar() override { clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void setFraction(double fraction) override;
    /// More bytes are done.
    void add(std::uint64_t bytes);

  private:
    void show(double fraction, Clock::time_point now);
    void clear();

    std::string what_;
    std::uint64_t bytes_;
    std::uint64_t done_ = 0;
    Place place_;
    bool isShown_ = false;
    Clock::time_point start_;
    Clock::time_point lastShown_;
};

}  // namespace installer

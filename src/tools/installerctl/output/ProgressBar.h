#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "ports/window/View.h"

namespace installer {

/// A bar on standard error, if that is a terminal and the work takes long enough to need one: how
/// much is done, how fast, and how long it will take.
class ProgressBar final : public ProgressIndicator {
  public:
    /// `what` stands before the bar; `bytes` is all that there is to do, 0 if it is not known.
    ProgressBar(std::string what, std::uint64_t bytes);
    ~ProgressBar() override { clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void setFraction(double fraction) override;
    /// More bytes are done.
    void add(std::uint64_t bytes);

  private:
    using Clock = std::chrono::steady_clock;

    void show(double fraction, Clock::time_point now);
    void clear();

    std::string what_;
    std::uint64_t bytes_;
    std::uint64_t done_ = 0;
    bool isOnTerminal_;
    bool isShown_ = false;
    Clock::time_point start_ = Clock::now();
    Clock::time_point lastShown_ = start_;
};

}  // namespace installer

#pragma once

#include <cstdint>
#include <string>

#include "ports/window/View.h"
#include "tools/terminal/LiveLine.h"

namespace installer {

/// A bar on standard error, if that is a terminal and the work takes long enough to need one: how
/// much is done, how fast, and how long it will take.
class ProgressBar final : public ProgressIndicator {
  public:
    /// `what` stands before the bar; `bytes` is all that there is to do, 0 if it is not known.
    ProgressBar(std::string what, std::uint64_t bytes,
                LiveLine::Place place = LiveLine::standardError());

    void setFraction(double fraction) override;
    /// More bytes are done.
    void add(std::uint64_t bytes);

  private:
    [[nodiscard]] std::string textAt(double fraction) const;

    std::string what_;
    std::uint64_t bytes_;
    std::uint64_t done_ = 0;
    LiveLine line_;
};

}  // namespace installer

#pragma once

#include "ports/Clock.h"

namespace installer {

/// The machine's own clock.
class SystemClock final : public Clock {
  public:
    void sleep(std::chrono::microseconds duration) override;
    [[nodiscard]] std::chrono::nanoseconds now() const override;
};

}  // namespace installer

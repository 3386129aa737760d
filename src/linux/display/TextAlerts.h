#pragma once

#include "ports/Alerts.h"

namespace installer {

class SystemLog;

/// Alerts without a display: title and message become one line of the log, which also
/// goes to standard error, and the answer is the first button. Never waits.
class TextAlerts final : public Alerts {
  public:
    explicit TextAlerts(SystemLog& log) : log_(log) {}

    [[nodiscard]] std::size_t runModal(const Alert& alert) override;

  private:
    SystemLog& log_;
};

}  // namespace installer

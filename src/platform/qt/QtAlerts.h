#pragma once

#include "platform/Alerts.h"

namespace installer {

/// Alerts in a box over the active window, modal for the whole application. All texts are shown as
/// they are: what looks like markup in a path stays text, and a path too long for a line is
/// wrapped. Closing the box, by Escape as well, answers the last button: with two of them, the one
/// that commits to less.
class QtAlerts final : public Alerts {
  public:
    /// 0 when the alert has no buttons; the box has one of the toolkit's own then.
    [[nodiscard]] std::size_t runModal(const Alert& alert) override;
};

}  // namespace installer

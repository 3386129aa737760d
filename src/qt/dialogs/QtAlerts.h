#pragma once

#include "ports/Alerts.h"

namespace installer {

class Bundle;

/// Alerts in a box over the active window, modal for the whole application. All texts are shown as
/// they are: what looks like markup in a path stays text, and a path too long for a line is
/// wrapped. Closing the box, by Escape as well, answers the last button: with two of them, the one
/// that commits to less.
class QtAlerts final : public Alerts {
  public:
    /// The bundle's pictures stand beside the text: "Installer_Error" for a warning, else
    /// "AppIcon"; the toolkit's own where the bundle lacks them.
    explicit QtAlerts(const Bundle& bundle) : bundle_(bundle) {}

    /// 0 when the alert has no buttons; the box has one of the toolkit's own then.
    [[nodiscard]] std::size_t runModal(const Alert& alert) override;

  private:
    const Bundle& bundle_;
};

}  // namespace installer

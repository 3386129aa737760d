#pragma once

#include "ports/Alerts.h"

namespace installer {

class Bundle;

/// Alerts in a box over the active window, modal for the whole application. Texts are shown as they
/// are: markup in a path stays text, and a path that is too long is wrapped. Closing the box, also
/// with Escape, gives the last button: of two buttons, the one that commits to less.
class QtAlerts final : public Alerts {
  public:
    /// Beside the text is a picture of the bundle, "Installer_Error" for a warning, else "AppIcon";
    /// the toolkit's own if the bundle has none.
    explicit QtAlerts(const Bundle& bundle) : bundle_(bundle) {}

    /// 0 if the alert has no buttons; the box then has a button of the toolkit.
    [[nodiscard]] std::size_t runModal(const Alert& alert) override;

  private:
    const Bundle& bundle_;
};

}  // namespace installer

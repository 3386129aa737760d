#pragma once

#include <functional>
#include <optional>

#include "linux/display/TextAlerts.h"
#include "linux/process/Environment.h"
#include "ports/Alerts.h"

namespace installer {

class SystemLog;
class WindowModule;

/// Alerts of a process that has no window: each is a line of the log, and where the environment
/// names a display the user is asked too, in a box. The window module is loaded for the first such
/// alert, and where that fails the alerts stay lines, whose answer is the first button.
class DisplayAlerts final : public Alerts {
  public:
    /// `loadWindowModule` is called once at most. It gives null when there is no module or no
    /// display; what it gives outlives this object.
    DisplayAlerts(SystemLog& log, Environment environment,
                  std::function<WindowModule*()> loadWindowModule);

    [[nodiscard]] std::size_t runModal(const Alert& alert) override;

  private:
    [[nodiscard]] WindowModule* windowModule();

    TextAlerts text_;
    Environment environment_;
    std::function<WindowModule*()> loadWindowModule_;
    std::optional<WindowModule*> loaded_;
};

}  // namespace installer

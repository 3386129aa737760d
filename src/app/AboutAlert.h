#pragma once

#include "ports/Alerts.h"

namespace installer {

class Bundle;

/// Says which product the installer installs, who makes it, and which version it is.
[[nodiscard]] Alert aboutAlert(const Bundle& bundle);

}  // namespace installer

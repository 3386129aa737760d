#pragma once

#include <string>

#include "ports/Alerts.h"

namespace installer {

class Bundle;

/// Says that the desktop has no program for the address or file, and names it, so that people can
/// open it themselves.
[[nodiscard]] Alert couldNotOpenAlert(const Bundle& bundle, const std::string& addressOrPath);

}  // namespace installer

#pragma once

#include <string>

#include "linux/process/Environment.h"

namespace installer {

/// Shows the text to a person for whom no window can be opened, if the environment names a display
/// and nobody reads standard error on a terminal: with the first of kdialog, zenity, xmessage and
/// notify-send that there is. Returns when it was closed. No-op otherwise.
void showWithoutToolkit(const std::string& text, const Environment& environment);

}  // namespace installer

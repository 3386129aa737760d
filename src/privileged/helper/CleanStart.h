#pragma once

namespace installer {

/// Frees this process from what whoever started it left behind: every descriptor but the standard
/// three (a missing one of these becomes /dev/null), the environment (what others can read of it
/// too), the mask, the working folder, blocked and ignored signals, timers, limits. Broken pipes
/// and files beyond a limit become errors, and no key pressed in a terminal ends the work.
void cleanStart();

}  // namespace installer

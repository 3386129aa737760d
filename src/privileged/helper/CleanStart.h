#pragma once

namespace installer {

/// Resets what this process inherited from the one that started it: descriptors but the standard
/// three (a missing one of these becomes /dev/null), the environment (what others can read of it
/// too), the mask, the working folder, blocked and ignored signals, timers, limits. Broken pipes
/// and files beyond a limit become errors, and no key pressed in a terminal ends the work.
void cleanStart();

}  // namespace installer

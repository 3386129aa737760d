#pragma once

namespace installer {

struct Platform;

/// Installs into every host that discovery finds, without a window and without a question. How it
/// went is said in the system log, in the installer log and, for an item that could not be
/// installed, in an alert; nothing is returned, since the program ends with success whatever
/// happened.
void installQuietly(Platform& platform);

}  // namespace installer

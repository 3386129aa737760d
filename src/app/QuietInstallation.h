#pragma once

namespace installer {

struct Platform;

/// Installs into every host that discovery finds, without a window and without a question. The
/// system log and the installer log say how it went; an item that could not be installed is also
/// shown in an alert. Returns nothing: a quiet run always ends with status 0.
void installQuietly(Platform& platform);

}  // namespace installer

#pragma once

#include <string>

#include "linux/desktop/ProcessFacts.h"

namespace installer {

class Bundles;

/// The name by which a person knows what the process runs, well-formed UTF-8; empty when there is
/// nothing to tell it from. The first of these that holds:
///
///  - A Windows program (run by Wine) goes by its file's name without ".exe".
///  - A program or a script in an application package goes by the package's name: its
///    CFBundleName, else the folder's name without ".app".
///  - Any other script is no application, and has no name: "Photoshop backup.sh" is no Photoshop.
///  - Any other program goes by its file's name. Which that is, the short name decides, as the one
///    thing known of every process; the rest of a long name is found in the arguments or, where it
///    may be read, in the program's path.
[[nodiscard]] std::string applicationName(const ProcessFacts& facts, Bundles& bundles);

}  // namespace installer

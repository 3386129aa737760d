#pragma once

#include <string>

namespace installer {

class Bundle;
struct ProgressReport;

/// The line below the bar of an installation: the number of the item, how much of a large item is
/// copied, and how long the rest will take once that is known. Empty before the first item.
[[nodiscard]] std::string progressNote(const Bundle& bundle, const ProgressReport& report);

/// The name of the file that is copied within a long item, short enough for a line.
[[nodiscard]] std::string progressFile(const ProgressReport& report);

}  // namespace installer

#pragma once

#include "ports/FileManager.h"

namespace installer {

struct InstallPlan;
struct InstallRun;

/// The copies of a run in the order in which its items are installed, for a file manager that
/// prepares them. The plan outlives the schedule.
[[nodiscard]] CopySchedule plannedCopies(const InstallPlan& plan, const InstallRun& run);

}  // namespace installer

#pragma once

#include "foundation/values/WriteGrant.h"

namespace installer {

struct InstallPlan;
struct Platform;

/// What a run with that plan may change as root: its items, and what follows them in the maker's
/// folder (the log, the list of external editors, the identifier). The folders are the maker's own
/// and those of the hosts, as far as an item goes there, and the folder of every other item.
[[nodiscard]] WriteGrant plannedWrites(Platform& platform, const InstallPlan& plan);

}  // namespace installer

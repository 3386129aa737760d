#pragma once

#include <vector>

#include "install/plan/InstallPlan.h"

namespace installer {

class PayloadTrees;

/// What of the payload no rule takes, whatever the hosts. In each folder the hidden entries come
/// first, then what is left out of the others, in the file system's own order. What lies in an item
/// that is copied whole is not looked at.
[[nodiscard]] std::vector<LeftOutEntry> leftOutEntries(Platform& platform, PayloadTrees& trees);

}  // namespace installer

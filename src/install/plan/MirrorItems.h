#pragma once

#include <string>
#include <vector>

#include "install/plan/InstallPlan.h"

namespace installer {

class PayloadTrees;

/// The folder "HD" of the payload, which looks like the target disk seen from its root.
[[nodiscard]] std::string mirrorFolder(Platform& platform);

/// The maker's folder in the mirror's Application Support, which holds the product folders.
[[nodiscard]] std::string mirroredCompanyFolder(Platform& platform);

/// What is installed from the mirror: every package, wherever it lies, then what lies in the
/// product folders, packages excepted. Nothing else in the mirror is ever installed.
[[nodiscard]] std::vector<PlannedItem> mirrorItems(Platform& platform, PayloadTrees& trees);

}  // namespace installer

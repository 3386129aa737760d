#pragma once

#include <chrono>

#include "tools/installerctl/operations/ExitStatus.h"
#include "tools/installerctl/operations/Session.h"
#include "tools/installerctl/output/Report.h"
#include "tools/installerctl/records/Receipt.h"

namespace installer {

struct InstallationRules {
    bool requireHost = false;
    bool allowDowngrade = false;
    bool keepUserFiles = false;
    std::chrono::steady_clock::time_point deadline;  ///< for a host to end
};

/// Brings the disk to what the plan says, for each user in turn, by the run of a quiet
/// installation, and records it. Does nothing if nothing differs. `last` is the receipt of the last
/// run, or null.
[[nodiscard]] ExitStatus installProduct(Session& session, const Receipt* last,
                                        const InstallationRules& rules, Report& report);

}  // namespace installer

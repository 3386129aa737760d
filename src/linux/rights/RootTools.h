#pragma once

#include <string>
#include <vector>

#include "linux/rights/HelperCommand.h"
#include "ports/Authorization.h"
#include "privileged/helper/AdministratorTools.h"

namespace installer {

class FinishedTree;

/// The tools of an installation that root has started: they run in this process, by the same rules
/// and the same actions as in the privileged helper.
class RootTools {
  public:
    /// `finished`, when it is given, tells which work was done already while an item was copied.
    RootTools(const HelperPlace& place, const FinishedTree* finished);

    /// Runs the tool to its end. A signal that arrives meanwhile takes effect afterwards.
    /// `progress` is null or notified of the bytes that a copy moves.
    [[nodiscard]] PrivilegedLaunch execute(const std::string& tool,
                                           const std::vector<std::string>& arguments,
                                           ProgressSink* progress);

  private:
    AdministratorTools tools_;
};

}  // namespace installer

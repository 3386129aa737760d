#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "privileged/helper/InvokingUser.h"
#include "privileged/helper/Policy.h"
#include "privileged/helper/ProtectedFolders.h"
#include "privileged/protocol/Message.h"
#include "privileged/trees/TreeCopy.h"

namespace installer {

/// Runs the tools of an installation in this process, which is root's: the helper's, or that of an
/// installer that root has started. Nothing is done as root but through `run`.
class AdministratorTools {
  public:
    /// The exit statuses of the tools.
    enum class ExitStatus : std::uint32_t { succeeded = 0, failed = 1, refused = 126 };

    /// Whether nothing is left to do of a command that the policy has allowed.
    using IsDone = std::function<bool(const Command&)>;

    AdministratorTools(InvokingUser user, ProtectedFolders folders, IsDone isDone = {})
        : user_(std::move(user)), folders_(std::move(folders)), isDone_(std::move(isDone)) {}

    /// Does what the tool would do, if the policy allows it. Refusals and failures are reported. A
    /// signal that arrives during an action takes effect after it.
    [[nodiscard]] ExitStatus run(const ToolRequest& request, const CopyProgress& progress);

  private:
    InvokingUser user_;
    ProtectedFolders folders_;
    IsDone isDone_;
};

}  // namespace installer

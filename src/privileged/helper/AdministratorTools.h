#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include "foundation/values/WriteGrant.h"
#include "privileged/copies/TreeCopy.h"
#include "privileged/protocol/Message.h"
#include "privileged/wall/InvokingUser.h"
#include "privileged/wall/Policy.h"
#include "privileged/wall/ProtectedFolders.h"

namespace installer {

/// Runs the tools of an installation in this process, which is root's: the helper's, or that of an
/// installer that root has started. Nothing is done as root but through `run`.
class AdministratorTools {
  public:
    /// The exit statuses of the tools.
    enum class ExitStatus : std::uint32_t { succeeded = 0, failed = 1, refused = 126 };

    /// Whether nothing is left to do of a command that is allowed.
    using IsDone = std::function<bool(const Command&)>;

    AdministratorTools(InvokingUser user, ProtectedFolders folders, WriteGrant grant)
        : user_(std::move(user)), folders_(std::move(folders)), grant_(std::move(grant)) {}

    /// Does what the tool would do, if the policy's table, the folders of the system and the run's
    /// plan allow it. Refusals and failures are reported. A signal that arrives during an action
    /// takes effect after it.
    [[nodiscard]] ExitStatus run(const ToolRequestView& request, const CopyProgress& progress);

    /// Asked before a command is done.
    void setIsDone(IsDone isDone) { isDone_ = std::move(isDone); }

    /// What renews the data base of desktop entries, instead of this process itself.
    void setRefresh(std::function<std::error_code()> refresh) { refresh_ = std::move(refresh); }

    /// Adds what the run has planned, as far as it lies below the folders of the grant.
    void addPlanned(const PlanTexts& plan);

  private:
    [[nodiscard]] bool isPlanned(const Command& command) const;
    [[nodiscard]] std::error_code performNow(const Command& command, const CopyProgress& progress);

    InvokingUser user_;
    ProtectedFolders folders_;
    WriteGrant grant_;
    IsDone isDone_;
    std::function<std::error_code()> refresh_;
    /// The folders that were missing before: the run gives them to the user, as it does with its
    /// items.
    std::set<std::string, std::less<>> madeFolders_;
};

}  // namespace installer

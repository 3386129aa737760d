#include "linux/rights/RootTools.h"

#include <memory>
#include <span>

#include <unistd.h>

#include "privileged/copies/FinishedTree.h"
#include "privileged/helper/DesktopDatabase.h"
#include "privileged/system/AdminGroup.h"

namespace installer {
namespace {

using ExitStatus = AdministratorTools::ExitStatus;

/// Its end is past, and none of the tools says anything on its standard output.
class EndedTool : public PrivilegedTool {
  public:
    explicit EndedTool(ExitStatus status) : status_(status) {}

    void waitUntilEnded() override {}
    [[nodiscard]] std::size_t readOutput(std::span<char> /*buffer*/) override { return 0; }
    [[nodiscard]] bool hasSucceeded() const override { return status_ == ExitStatus::succeeded; }

  private:
    ExitStatus status_;
};

bool isDone(const Command& command, const FinishedTree& finished) {
    constexpr uid_t root = 0;
    static const gid_t group = administratorsGroup();
    switch (command.action) {
        case Action::setOwner:
            return finished.hasOwner(command.path, root, group);
        case Action::setMode:
            return finished.hasMode(command.path, command.mode);
        case Action::removeQuarantine:
            return finished.hasNoAttributes(command.path);
        default:
            return false;
    }
}

}  // namespace

RootTools::RootTools(const HelperPlace& place, const WriteGrant& grant,
                     const FinishedTree* finished)
    : tools_(InvokingUser(::getuid()), ProtectedFolders(place.volume, place.home, ::getuid()),
             grant) {
    tools_.setRefresh(startAwaitedDesktopDatabaseRefresh);
    if (finished == nullptr) return;
    tools_.setIsDone([finished](const Command& command) { return isDone(command, *finished); });
}

PrivilegedLaunch RootTools::execute(const std::string& tool,
                                    const std::vector<std::string>& arguments,
                                    ProgressSink* progress) {
    CopyProgress tell;
    if (progress != nullptr) {
        tell = [progress](std::uint64_t bytes) { progress->bytesCopied(bytes); };
    }
    return {0, std::make_unique<EndedTool>(tools_.run({tool, arguments}, tell))};
}

}  // namespace installer

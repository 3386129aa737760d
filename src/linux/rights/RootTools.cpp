#include "linux/rights/RootTools.h"

#include <memory>
#include <span>

#include <unistd.h>

#include "privileged/helper/HeldSignals.h"

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

}  // namespace

RootTools::RootTools(const HelperPlace& place)
    : tools_(InvokingUser(::getuid()), ProtectedFolders(place.volume, place.home, ::getuid())) {}

PrivilegedLaunch RootTools::execute(const std::string& tool,
                                    const std::vector<std::string>& arguments,
                                    ProgressSink* progress) {
    CopyProgress tell;
    if (progress != nullptr) {
        tell = [progress](std::uint64_t bytes) { progress->bytesCopied(bytes); };
    }
    const HeldSignals held;
    return {0, std::make_unique<EndedTool>(tools_.run({tool, arguments}, tell))};
}

}  // namespace installer

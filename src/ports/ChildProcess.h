#pragma once

#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "foundation/observers/Subscription.h"

namespace installer {

/// A process of the current user with a pipe on its standard output and one on its standard
/// error; its standard input is empty. Notices are delivered while the event loop turns, data
/// before the end of the process when both are there in one turn. Destroying the object stops
/// the notices and leaves the process alone.
class ChildProcess {
  public:
    enum class Pipe { standardOutput, standardError };

    virtual ~ChildProcess() = default;

    /// Starts the process. An error (no such program, not executable) leaves nothing running.
    [[nodiscard]] virtual std::error_code launch() = 0;

    /// Asks to be told once when there is something to read on the pipe, or its end was reached.
    /// May be asked before the launch; each notice uses the request up.
    virtual void waitForDataAndNotify(Pipe pipe) = 0;

    /// All that is in the pipe now, without waiting for more; nothing at the end.
    [[nodiscard]] virtual std::string availableData(Pipe pipe) = 0;

    /// Calls `handler` for each data notice of the pipe, until the handle is destroyed.
    [[nodiscard]] virtual Subscription onDataAvailable(Pipe pipe,
                                                       std::function<void()> handler) = 0;

    /// Calls `handler` once when the process has ended.
    [[nodiscard]] virtual Subscription onTerminated(std::function<void()> handler) = 0;
};

/// Makes child processes; starting them is up to the caller.
class ChildProcesses {
  public:
    virtual ~ChildProcesses() = default;
    [[nodiscard]] virtual std::unique_ptr<ChildProcess> create(
        const std::string& path, const std::vector<std::string>& arguments) = 0;
};

}  // namespace installer

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "ports/Authorization.h"
#include "privileged/protocol/MessageStream.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/Spawn.h"

namespace installer {

/// The privileged helper as its peer sees it: a process that runs one tool after the other. Kept
/// alive by its tools too, but ended by `end` or its destruction.
class PrivilegedHelper : public std::enable_shared_from_this<PrivilegedHelper> {
  public:
    struct Start {
        std::int32_t status = authorization_status::denied;
        std::shared_ptr<PrivilegedHelper> helper;  ///< there when `status` is 0
    };

    /// Runs the command and waits, without a time limit, until the helper says hello (who asks for
    /// a password takes the time it takes) or the command ends. The helper's standard input and
    /// output are one end of a pair of sockets: unlike a pipe's, no neighbour can open them again
    /// by way of /proc.
    /// `dismissed` is the exit status by which the command says that the person asked refused to
    /// answer, where it has one. `progress` as for `setProgressSink`.
    [[nodiscard]] static Start start(SpawnRequest command, std::optional<int> dismissed,
                                     ProgressSink* progress);

    ~PrivilegedHelper() { end(); }
    PrivilegedHelper(const PrivilegedHelper&) = delete;
    PrivilegedHelper& operator=(const PrivilegedHelper&) = delete;

    /// Starts a tool. First finishes what an earlier one, that nobody waited for, still has to
    /// say.
    [[nodiscard]] PrivilegedLaunch execute(const std::string& tool,
                                           const std::vector<std::string>& arguments);

    /// Told of the bytes of copies, and of 0 bytes while something is waited for; null for nobody.
    void setProgressSink(ProgressSink* progress) { progress_ = progress; }

    /// True once the helper can no longer be used.
    [[nodiscard]] bool isLost() const { return process_ < 0; }

    /// Closes the connection and waits for exactly this process. A tool that is running is left to
    /// finish.
    void end();

  private:
    class Tool;
    /// What is known of one run of a tool.
    struct Run {
        enum class State { running, ended, lost } state = State::running;
        std::string output;
        std::size_t read = 0;  ///< how much of the output was handed out
    };

    PrivilegedHelper(pid_t process, FileDescriptor connection, ProgressSink* progress)
        : process_(process),
          connection_(std::move(connection)),
          stream_(connection_.get(), connection_.get()),
          progress_(progress) {}

    [[nodiscard]] bool saidHello();
    [[nodiscard]] std::function<void()> whileWaiting() const;
    [[nodiscard]] std::optional<Message> receive() { return stream_.receive(whileWaiting()); }
    void handleNextMessage();
    void finish(Run& run);
    std::optional<int> reap();

    pid_t process_;
    FileDescriptor connection_;
    MessageStream stream_;
    std::shared_ptr<Run> running_;
    ProgressSink* progress_;
};

}  // namespace installer

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
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

/// The client's end of the privileged helper, a process that runs one tool after another. Requests
/// are sent ahead, a few together; each answer is read when somebody waits for it. Running tools
/// share ownership of the helper; `end` or the destructor ends the process.
class PrivilegedHelper : public std::enable_shared_from_this<PrivilegedHelper> {
  public:
    struct Start {
        std::int32_t status = authorization_status::denied;
        std::shared_ptr<PrivilegedHelper> helper;  ///< set if `status` is 0
    };

    /// Runs the command and waits until the helper says hello or the command ends. There is no
    /// time limit, because a password prompt may stay open. The helper's standard input and output
    /// are one end of a socket pair: unlike a pipe, another local user cannot reopen it through
    /// /proc. `dismissed` is the command's exit status if the user dismisses the prompt, or
    /// nullopt. `progress` as for `setProgressSink`.
    [[nodiscard]] static Start start(SpawnRequest command, std::optional<int> dismissed,
                                     ProgressSink* progress);

    ~PrivilegedHelper() { end(); }
    PrivilegedHelper(const PrivilegedHelper&) = delete;
    PrivilegedHelper& operator=(const PrivilegedHelper&) = delete;

    /// Tells the helper what the run has planned; its folders stand on the helper's command line.
    /// To be called once, before the first tool.
    void limitTo(const WriteGrant& grant);

    /// Starts a tool as soon as those before it have ended. Does not wait for them, unless very
    /// many are under way.
    [[nodiscard]] PrivilegedLaunch execute(const std::string& tool,
                                           const std::vector<std::string>& arguments);

    /// The sink is notified of copied bytes, and with 0 bytes during waits. Null for no sink.
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
        std::optional<std::uint32_t> exitStatus;
    };
    static constexpr std::size_t mostUnderWay = 128;
    static constexpr std::size_t mostUnsent = 16;

    PrivilegedHelper(pid_t process, FileDescriptor connection, ProgressSink* progress)
        : process_(process),
          connection_(std::move(connection)),
          stream_(connection_.get(), connection_.get()),
          progress_(progress) {}

    [[nodiscard]] bool saidHello();
    [[nodiscard]] std::function<void()> whileWaiting() const;
    [[nodiscard]] std::optional<Message> receive() { return stream_.receive(whileWaiting()); }
    void send(std::size_t mostKept);
    void handleNextMessage();
    void finish(Run& run);
    std::optional<int> reap();

    pid_t process_;
    FileDescriptor connection_;
    MessageStream stream_;
    std::deque<std::shared_ptr<Run>> underWay_;  ///< in the order of their requests
    std::string unsent_;                         ///< the requests of the last ones
    std::size_t unsentCount_ = 0;
    ProgressSink* progress_;
};

}  // namespace installer

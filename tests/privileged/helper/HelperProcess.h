#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "foundation/values/WriteGrant.h"
#include "privileged/protocol/Message.h"
#include "privileged/protocol/MessageStream.h"
#include "privileged/system/FileDescriptor.h"

namespace installer::test {

/// Allows to change whatever lies in one of the root's folders.
[[nodiscard]] WriteGrant everyFolder();

/// What the peer sends of it.
[[nodiscard]] std::string encodedGrant(const WriteGrant& grant);

/// The real helper program, started as its peer starts it, with a hostile touch where a test wants
/// one.
class HelperProcess {
  public:
    struct Start {
        std::vector<std::string> environment;
        std::vector<std::string> arguments;
        /// Done in the new process, just before it becomes the helper.
        std::function<void()> before;
        /// What the run may change; without it, whatever lies in one of the root's folders.
        std::optional<WriteGrant> grant = std::nullopt;
    };

    HelperProcess() : HelperProcess(Start()) {}
    explicit HelperProcess(const Start& start);
    ~HelperProcess();
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    /// Waits for the helper's hello, and sends what the run has planned.
    [[nodiscard]] bool saysHello();

    /// The exit status of a tool, or none when the helper ended instead.
    std::optional<std::uint32_t> run(const std::string& tool,
                                     const std::vector<std::string>& arguments);

    [[nodiscard]] bool sendBytes(std::string_view bytes) { return stream().send(bytes); }
    MessageStream& stream() { return *stream_; }
    [[nodiscard]] int connection() const { return connection_.get(); }
    void closeConnection() { connection_.reset(); }

    [[nodiscard]] pid_t process() const { return process_; }
    /// Waits for the helper's end: its exit status, or minus the signal that ended it. One that
    /// does not end for a minute is killed.
    int exitStatus();
    /// What it wrote to its standard error until its end.
    [[nodiscard]] std::string standardError();

  private:
    WriteGrant grant_;
    pid_t process_ = -1;
    FileDescriptor connection_;
    FileDescriptor standardError_;
    std::optional<MessageStream> stream_;
    std::optional<int> exitStatus_;
};

}  // namespace installer::test

#pragma once

#include <memory>
#include <string>
#include <system_error>

#include "foundation/observers/Subscription.h"
#include "ports/ChildProcess.h"

namespace installer {

class EventLoop;

/// Collects what a child process writes while the caller waits for its end. The event loop is
/// kept turning meanwhile, so that a window goes on redrawing.
class TaskOutputReader {
  public:
    /// Takes a process that is ready to be launched, and asks for its data and its end.
    TaskOutputReader(std::unique_ptr<ChildProcess> task, EventLoop& eventLoop);
    ~TaskOutputReader() = default;
    TaskOutputReader(const TaskOutputReader&) = delete;
    TaskOutputReader& operator=(const TaskOutputReader&) = delete;

    /// Starts the process and returns when the notice of its end has come, or earlier when the
    /// event loop has nothing left that could bring it. What is still in the pipes by then (a
    /// process of the process may hold them open) is not read. No time limit. An error means that
    /// the process could not be started.
    [[nodiscard]] std::error_code launchTaskAndRunSynchronous();

    /// All that has been read so far, as bytes.
    [[nodiscard]] const std::string& standardOutputData() const { return standardOutput_; }
    [[nodiscard]] const std::string& standardErrorData() const { return standardError_; }

    /// What the notices of the process call: the first two append all that is in the pipe now and
    /// ask to be told of more.
    void standardOutNotification();
    void standardErrorNotification();
    void terminatedNotification();

  private:
    std::unique_ptr<ChildProcess> task_;
    EventLoop& eventLoop_;
    std::string standardOutput_;
    std::string standardError_;
    bool taskComplete_ = false;
    Subscription standardOutNotices_;
    Subscription standardErrorNotices_;
    Subscription terminatedNotice_;
};

}  // namespace installer

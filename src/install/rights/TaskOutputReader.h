#pragma once

#include <memory>
#include <string>
#include <system_error>

#include "foundation/observers/Subscription.h"
#include "ports/ChildProcess.h"

namespace installer {

class EventLoop;

/// Collects the output of a child process while the caller waits for its end. It turns the event
/// loop meanwhile, so that a window still redraws.
class TaskOutputReader {
  public:
    /// Takes a process that is ready to be launched, and subscribes to its data and its end.
    TaskOutputReader(std::unique_ptr<ChildProcess> task, EventLoop& eventLoop);
    ~TaskOutputReader() = default;
    TaskOutputReader(const TaskOutputReader&) = delete;
    TaskOutputReader& operator=(const TaskOutputReader&) = delete;

    /// Starts the process and returns when it is notified of the end, or earlier if the event loop
    /// has no sources left. Data that is still in the pipes then is not read. No time limit. An
    /// error means that the process could not be started.
    [[nodiscard]] std::error_code launchTaskAndRunSynchronous();

    /// All that has been read so far, as bytes.
    [[nodiscard]] const std::string& standardOutputData() const { return standardOutput_; }
    [[nodiscard]] const std::string& standardErrorData() const { return standardError_; }

    /// The handlers of the process's notifications. The first two append all data that is in the
    /// pipe now and ask for the next notification.
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

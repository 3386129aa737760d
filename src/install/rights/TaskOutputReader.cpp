#include "install/rights/TaskOutputReader.h"

#include <utility>

#include "ports/EventLoop.h"

namespace installer {

TaskOutputReader::TaskOutputReader(std::unique_ptr<ChildProcess> task, EventLoop& eventLoop)
    : task_(std::move(task)), eventLoop_(eventLoop) {
    using Pipe = ChildProcess::Pipe;
    standardOutNotices_ =
        task_->onDataAvailable(Pipe::standardOutput, [this] { standardOutNotification(); });
    standardErrorNotices_ =
        task_->onDataAvailable(Pipe::standardError, [this] { standardErrorNotification(); });
    terminatedNotice_ = task_->onTerminated([this] { terminatedNotification(); });
    task_->waitForDataAndNotify(Pipe::standardOutput);
    task_->waitForDataAndNotify(Pipe::standardError);
}

std::error_code TaskOutputReader::launchTaskAndRunSynchronous() {
    if (const std::error_code error = task_->launch()) return error;
    while (!taskComplete_ && eventLoop_.runOnce()) {
    }
    return {};
}

void TaskOutputReader::standardOutNotification() {
    standardOutput_ += task_->availableData(ChildProcess::Pipe::standardOutput);
    task_->waitForDataAndNotify(ChildProcess::Pipe::standardOutput);
}

void TaskOutputReader::standardErrorNotification() {
    standardError_ += task_->availableData(ChildProcess::Pipe::standardError);
    task_->waitForDataAndNotify(ChildProcess::Pipe::standardError);
}

void TaskOutputReader::terminatedNotification() {
    taskComplete_ = true;
}

}  // namespace installer

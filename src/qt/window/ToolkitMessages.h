#pragma once

#include <QMessageLogContext>

namespace installer {

class SystemLog;

/// Sends the toolkit's messages to the system log as long as this object lives. It drops two
/// messages about an environment in which the installer works: a session without a runtime folder,
/// and an outdated character encoding. At most one object lives at a time. It belongs to the thread
/// that made it; messages of other threads go to standard error.
class ToolkitMessages {
  public:
    explicit ToolkitMessages(SystemLog& log);
    ToolkitMessages(const ToolkitMessages&) = delete;
    ToolkitMessages& operator=(const ToolkitMessages&) = delete;
    ~ToolkitMessages();

  private:
    QtMessageHandler before_;
};

}  // namespace installer

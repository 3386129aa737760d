#pragma once

#include <QMessageLogContext>

namespace installer {

class SystemLog;

/// Sends what the toolkit has to say to the system log for as long as it lives, but for remarks
/// about surroundings in which the installer works all the same: a session without a folder of its
/// own, or a character encoding that nobody uses any more. At most one lives at a time. Belongs to
/// the thread that made it; what other threads say goes to standard error.
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

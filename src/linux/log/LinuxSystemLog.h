#pragma once

#include <string>

#include "ports/SystemLog.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// Writes each line to the system's log daemon, as a user-level message of this program, and to
/// standard error, in one write each.
///
/// Either may be missing. If there is no daemon when the program starts, it is not tried again; a
/// daemon that does not read delays the program once, briefly. A standard error without a reader is
/// skipped: the whole program ignores SIGPIPE (see `prepareProcess`).
class LinuxSystemLog final : public SystemLog {
  public:
    /// Whether each line also goes to standard error.
    enum class Echo { onStandardError, none };

    explicit LinuxSystemLog(std::string programName, std::string daemonSocket = "/dev/log",
                            Echo echo = Echo::onStandardError);

    void log(std::string_view line) override;

  private:
    void sendToDaemon(std::string_view text);
    void connectToDaemon();

    std::string programName_;
    std::string daemonSocket_;
    Echo echo_;
    FileDescriptor daemon_;
};

}  // namespace installer

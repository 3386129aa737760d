#pragma once

#include <string>

#include "ports/SystemLog.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

/// Writes each line to the system's log daemon, as a user-level message of this program, and to
/// standard error, in one write each.
///
/// Makes no trouble where one of them is missing: without a daemon at the start of the program the
/// daemon is not asked again, a daemon that does not read holds the program back only once and
/// briefly, and a standard error that nobody reads any more is passed over, SIGPIPE being ignored
/// by the whole program (see `prepareProcess`).
class LinuxSystemLog final : public SystemLog {
  public:
    explicit LinuxSystemLog(std::string programName, std::string daemonSocket = "/dev/log");

    void log(std::string_view line) override;

  private:
    void sendToDaemon(std::string_view text);
    void connectToDaemon();

    std::string programName_;
    std::string daemonSocket_;
    FileDescriptor daemon_;
};

}  // namespace installer

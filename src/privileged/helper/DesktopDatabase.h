#pragma once

#include <system_error>

#include <sys/types.h>

#include "privileged/system/FileDescriptor.h"

namespace installer {

/// Starts the tool that renews the machine's data base of desktop entries, and does not wait for
/// its end: the installation does not depend on it. A machine without the tool has no such data
/// base. For a process that ignores the ends of its children.
[[nodiscard]] std::error_code startDesktopDatabaseRefresh();

/// The same for a process that does not: a thread waits for the tool's end, so that it does not
/// stay in the system's list. Signals are held when this is called, and never reach that thread.
[[nodiscard]] std::error_code startAwaitedDesktopDatabaseRefresh();

/// A process beside the helper that does that and nothing else, and can write nowhere else. To be
/// made before the helper gives up its own rights. It ends with this object, or with this process.
class DesktopDatabase {
  public:
    DesktopDatabase();
    ~DesktopDatabase();
    DesktopDatabase(const DesktopDatabase&) = delete;
    DesktopDatabase& operator=(const DesktopDatabase&) = delete;

    /// As `startDesktopDatabaseRefresh`, but what the tool's start gave is not known.
    [[nodiscard]] std::error_code refresh();

  private:
    FileDescriptor requests_;  ///< a byte for each
    pid_t process_ = -1;
};

}  // namespace installer

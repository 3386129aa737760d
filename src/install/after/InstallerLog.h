#pragma once

namespace installer {

class PrivilegedCommands;
struct InstallRun;
struct Platform;

/// The file that lists everything the last run installed, one path a line.
class InstallerLog {
  public:
    InstallerLog(Platform& platform, const InstallRun& run, PrivilegedCommands& commands)
        : platform_(platform), run_(run), commands_(commands) {}

    /// Replaces the log by the run's list. A run that installed nothing leaves it as it is. A
    /// failure is only logged: it never makes the run a failed one. A log that cannot be
    /// written is empty; where it cannot even be emptied it is the old one, or ends too early.
    /// Whether it lists the run's items now.
    bool logInstalledPaths();

  private:
    Platform& platform_;
    const InstallRun& run_;
    PrivilegedCommands& commands_;
};

}  // namespace installer

#pragma once

namespace installer {

class PrivilegedCommands;
struct InstallRun;
struct Platform;

/// The file that lists everything that the last run installed, one path per line.
class InstallerLog {
  public:
    InstallerLog(Platform& platform, const InstallRun& run, PrivilegedCommands& commands)
        : platform_(platform), run_(run), commands_(commands) {}

    /// Replaces the log by the run's list; returns whether the log lists the run's items now. If
    /// the run installed nothing, the log stays as it is. A failure is only logged and never fails
    /// the run. If the write fails, the log is empty; if it cannot be emptied either, it may hold
    /// the old list or a part of the new one.
    bool logInstalledPaths();

  private:
    Platform& platform_;
    const InstallRun& run_;
    PrivilegedCommands& commands_;
};

}  // namespace installer

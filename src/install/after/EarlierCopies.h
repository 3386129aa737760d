#pragma once

#include <string>

namespace installer {

class FileQuery;
class HostModel;
class PrivilegedCommands;
class WriteGrant;
struct Platform;

/// Copies that earlier installations have left in a host's plug-in folder: entries at any depth
/// with the name of a plug-in or an auto-layer item of this installer's bundle. In reserve: no run
/// searches for them.
class EarlierCopies {
  public:
    EarlierCopies(Platform& platform, PrivilegedCommands& commands)
        : platform_(platform), commands_(commands) {}

    /// Removes them as the administrator, and logs what was found. If the rights are refused, it
    /// sets the run's `authDenied` and stops; any other failure is ignored. Turns the event loop
    /// while it searches. Does nothing if the host has no plug-in folder, or if that folder is the
    /// root of a disk.
    void unInstallForHost(const HostModel& host);

  private:
    enum class Outcome { finished, refused };

    [[nodiscard]] Outcome removeCopiesNamed(const std::string& name, FileQuery& query);

    Platform& platform_;
    PrivilegedCommands& commands_;
};

/// Adds what `unInstallForHost` removes to what a run may change as root. No plan holds it.
void addEarlierCopies(Platform& platform, const HostModel& host, WriteGrant& grant);

}  // namespace installer

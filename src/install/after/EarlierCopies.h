#pragma once

#include <string>
#include <vector>

namespace installer {

class FileQuery;
class HostModel;
class PrivilegedCommands;
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

    [[nodiscard]] bool canSearch(const std::string& folder) const;
    [[nodiscard]] std::vector<std::string> searchedNames() const;
    [[nodiscard]] Outcome removeCopiesNamed(const std::string& name, FileQuery& query);

    Platform& platform_;
    PrivilegedCommands& commands_;
};

}  // namespace installer

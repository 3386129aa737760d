#pragma once

#include <string>
#include <vector>

namespace installer {

class FileQuery;
class HostModel;
class PrivilegedCommands;
struct Platform;

/// What earlier installations have left in a host's plug-in folder: entries, at whatever depth,
/// that have the name of a plug-in or of an auto-layer item that this installer carries.
class EarlierCopies {
  public:
    EarlierCopies(Platform& platform, PrivilegedCommands& commands)
        : platform_(platform), commands_(commands) {}

    /// Removes them as the administrator, and says in the system log what was found. When that is
    /// refused the run's `authDenied` is set and the rest is left; any other failure is nobody's
    /// concern. Turns the event loop while it searches. Nothing is searched when the folder is not
    /// known, or would be a whole disk.
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

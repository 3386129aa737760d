#pragma once

namespace installer {

class PrivilegedCommands;
struct Platform;

/// The file in the maker's folder that holds a random identifier of this machine's installation. In
/// reserve: no run writes it.
class InstallIdentifier {
  public:
    InstallIdentifier(Platform& platform, PrivilegedCommands& commands)
        : platform_(platform), commands_(commands) {}

    /// Writes the file unless there is an entry of that name, whatever it is. The administrator
    /// makes the file and gives it to the user, and the user writes it. A failure is only logged.
    void installAnalytics();

  private:
    Platform& platform_;
    PrivilegedCommands& commands_;
};

}  // namespace installer

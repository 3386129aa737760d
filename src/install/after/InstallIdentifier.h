#pragma once

namespace installer {

class PrivilegedCommands;
struct Platform;

/// The file in the maker's folder that holds a random identifier of this machine's installation.
class InstallIdentifier {
  public:
    InstallIdentifier(Platform& platform, PrivilegedCommands& commands)
        : platform_(platform), commands_(commands) {}

    /// Writes the file once: an entry that is already there is left as it is, whatever it holds.
    /// The administrator makes the file and gives it to the user, who fills it. A failure is only
    /// logged.
    void installAnalytics();

  private:
    Platform& platform_;
    PrivilegedCommands& commands_;
};

}  // namespace installer

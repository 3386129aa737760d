#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace installer {

/// The folders of the system and other people's homes, in which the helper changes nothing
/// (`isInSystemFolder`). They are those of the target volume where there is one.
class ProtectedFolders {
  public:
    /// Those of the running system, seen by a user without a home folder.
    ProtectedFolders() = default;

    /// `volume`: the target volume's real path; empty for the running system. `home`: the folder
    /// that the installer calls the user's home; it counts, as the account's own one does, if it
    /// belongs to the user.
    ProtectedFolders(std::string volume, const std::string& home, uid_t user);

    [[nodiscard]] bool hold(std::string_view path) const;

    /// Whether they are those of a target volume: then nothing of the running system is meant.
    [[nodiscard]] bool areOnTargetVolume() const { return !volume_.empty(); }

  private:
    std::string volume_;
    std::vector<std::string> homes_;
};

}  // namespace installer

#pragma once

#include <string>

#include "install/rights/PrivilegedCommands.h"

namespace installer {

class FileManager;
struct FileAttributeChanges;

/// Makes the folders that items are installed into.
class DestinationFolders {
  public:
    DestinationFolders(Platform& platform, InstallRun& run, PrivilegedCommands& commands);

    /// Makes sure that there is something at the path: an existing entry, or one that the user may
    /// not look at, is left as it is, else a
    /// folder is made, with those missing above it. Owner, group and permissions are given to the
    /// folder and to its parent when that was missing too, not to folders further up. The
    /// administrator does it where the user may not; when that is refused the run's `authDenied`
    /// is set and the rest is left.
    void ensureDirExists(const std::string& path);

    /// Applies the changes to the entry and, when it is a folder, to everything below it. Links
    /// are changed themselves and never followed. What cannot be changed or listed is passed over.
    void setAttributesRecursive(const std::string& path, const FileAttributeChanges& attributes);

  private:
    [[nodiscard]] bool isThere(const std::string& path) const;
    [[nodiscard]] PrivilegedCommands::Outcome makeFolder(const std::string& path);

    FileManager& files_;
    InstallRun& run_;
    PrivilegedCommands& commands_;
};

}  // namespace installer

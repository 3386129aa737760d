#pragma once

#include <string>

namespace installer {

class FileInstaller;
class PrivilegedCommands;
struct Platform;
struct WalkEntry;

/// The payload's folder "HD", which looks like the target disk seen from its root.
class DiskMirror {
  public:
    DiskMirror(Platform& platform, PrivilegedCommands& commands, FileInstaller& installer);

    /// Installs every package, wherever it lies, then what lies in the folders of the maker's
    /// products. Nothing else in the mirror is ever installed. Goes on after a refusal: the
    /// application database and the quarantine are then seen to all the same.
    void installFiles();

    /// `HD` in the payload.
    [[nodiscard]] static std::string folder(Platform& platform);
    /// The maker's folder in the mirror's Application Support, which holds the product folders.
    [[nodiscard]] static std::string companyFolder(Platform& platform);

  private:
    void installPackage(const WalkEntry& package);
    void installProductFolder(const std::string& productFolder);
    [[nodiscard]] std::string targetPath(const std::string& path) const;

    Platform& platform_;
    PrivilegedCommands& commands_;
    FileInstaller& installer_;
    std::string folder_;
};

}  // namespace installer

#pragma once

#include <span>
#include <string>

namespace installer {

class FileInstaller;
class PrivilegedCommands;
struct PlannedItem;
struct Platform;

/// Installs the payload's folder "HD", which looks like the target disk seen from its root.
class DiskMirror {
  public:
    DiskMirror(Platform& platform, PrivilegedCommands& commands, FileInstaller& installer)
        : platform_(platform), commands_(commands), installer_(installer) {}

    /// Installs the mirror items of a plan: the packages, then the product folders. Goes on after
    /// a refusal: the application database and the quarantine are then seen to all the same.
    void installFiles(std::span<const PlannedItem> items);

    /// Puts the applications among the mirror items, which are installed, into the user's menus.
    void registerApplications(std::span<const PlannedItem> items);

    /// Installs all that the mirror has: reads it first.
    void installFiles();

  private:
    void installPackage(const PlannedItem& package);
    void registerApplication(const std::string& path);

    Platform& platform_;
    PrivilegedCommands& commands_;
    FileInstaller& installer_;
};

}  // namespace installer

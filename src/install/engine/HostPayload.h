#pragma once

#include <span>
#include <string>

namespace installer {

class FileInstaller;
class HostModel;
struct PlannedItem;
struct Platform;

/// Installs the parts of the payload that go into the folders of a host application.
class HostPayload {
  public:
    HostPayload(Platform& platform, FileInstaller& installer)
        : platform_(platform), installer_(installer) {}

    /// Installs the items of a host in a plan, one by one; the folders that they need are made on
    /// the way.
    void installFiles(std::span<const PlannedItem> items);

    /// Installs what there is for a host of that kind; for most kinds there is nothing. Whether
    /// the host is selected is up to the caller. Reads the payload first.
    void installFiles(const HostModel& host);

    /// Mirrors the packages and regular files anywhere in `source` into the folder `to`, one by
    /// one. Hidden entries, links and special files are left out. Without a folder to go to,
    /// nothing is installed.
    void copyHostFilesFrom(const std::string& source, const std::string& to);

  private:
    Platform& platform_;
    FileInstaller& installer_;
};

}  // namespace installer

#pragma once

#include <string>
#include <vector>

namespace installer {

class FileInstaller;
class HostModel;
struct Platform;

/// The parts of the payload that go into the folders of a host application.
class HostPayload {
  public:
    HostPayload(Platform& platform, FileInstaller& installer)
        : platform_(platform), installer_(installer) {}

    /// Installs what there is for a host of that kind; for most kinds there is nothing. Whether
    /// the host is selected is up to the caller.
    void installFiles(const HostModel& host);

    /// What `installFiles` copies for the host, in that order.
    [[nodiscard]] static std::vector<std::string> sources(Platform& platform,
                                                          const HostModel& host);

    /// Mirrors the packages and regular files anywhere in `source` into the folder `to`, one by
    /// one; the folders between are made as they are needed. Hidden entries, links and special
    /// files are left out. Without a folder to go to, nothing is installed.
    void copyHostFilesFrom(const std::string& source, const std::string& to);

  private:
    /// A folder of the payload and the folder that it is mirrored into.
    struct Mirrored {
        std::string source;
        std::string to;
    };
    struct Item {
        std::string path;
        bool isPackage = false;
    };

    [[nodiscard]] static std::vector<Mirrored> foldersFor(Platform& platform,
                                                          const HostModel& host);
    [[nodiscard]] static std::vector<Item> items(Platform& platform, const Mirrored& folder);

    Platform& platform_;
    FileInstaller& installer_;
};

}  // namespace installer

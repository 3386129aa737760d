#pragma once

#include <string>

namespace installer {

class FileManager;
struct Platform;

/// Tells the makers of a payload, in the system log, what in it is never installed whatever the
/// hosts: plain files of the disk mirror outside the product folders, hidden entries, links and
/// special files outside of what is copied whole, and folders that the installer does not know or
/// cannot read.
class PayloadWarnings {
  public:
    explicit PayloadWarnings(Platform& platform);

    /// One line for each such entry; a hidden folder is one entry. Looks at names and types only.
    void log();

  private:
    void checkPayload();
    void checkDiskMirror(const std::string& folder);
    void checkHostFolder(const std::string& folder);
    void warnOfHiddenEntries(const std::string& folder);
    void warn(const std::string& path);

    Platform& platform_;
    FileManager& files_;
    std::string payload_;
    std::string companyFolder_;
};

}  // namespace installer

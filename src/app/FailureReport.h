#pragma once

#include <string>
#include <vector>

#include "ports/window/InterfaceOwner.h"

namespace installer {

class InstallFilesController;
struct WindowPlatform;

/// What the last page says about a failed installation, and what it offers for finding the cause.
class FailureReport {
  public:
    /// Both outlive this object.
    FailureReport(WindowPlatform& platform, const InstallFilesController& installation)
        : platform_(platform), installation_(installation) {}

    /// The items that could not be installed in the last run: name and folder.
    [[nodiscard]] std::vector<ListRow> failedItems() const;
    [[nodiscard]] bool hasFailedItems() const;

    /// Why the last run ended early: administrator rights were refused or lost. Empty when it did
    /// not.
    [[nodiscard]] std::string failureReason() const;

    [[nodiscard]] bool installerLogExists() const;
    void openInstallerLog() const;
    /// Puts the log's text on the clipboard; a log that cannot be read leaves the clipboard alone.
    void copyInstallerLog() const;

  private:
    [[nodiscard]] std::string installerLogPath() const;

    WindowPlatform& platform_;
    const InstallFilesController& installation_;
};

}  // namespace installer

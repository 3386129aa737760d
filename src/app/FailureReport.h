#pragma once

#include <string>
#include <vector>

#include "ports/window/InterfaceOwner.h"

namespace installer {

class InstallFilesController;
struct WindowPlatform;

/// What the last page shows about a failed installation, and the actions that help to find the
/// cause.
class FailureReport {
  public:
    /// Both outlive this object.
    FailureReport(WindowPlatform& platform, const InstallFilesController& installation)
        : platform_(platform), installation_(installation) {}

    /// The items that could not be installed in the last run: name and folder.
    [[nodiscard]] std::vector<ListRow> failedItems() const;
    [[nodiscard]] bool hasFailedItems() const;

    /// A text if administrator rights were refused or lost in the last run, else empty.
    [[nodiscard]] std::string failureReason() const;

    [[nodiscard]] bool installerLogExists() const;
    void openInstallerLog() const;
    /// Copies the log's text to the clipboard. No-op if the log cannot be read.
    void copyInstallerLog() const;

  private:
    [[nodiscard]] std::string installerLogPath() const;

    WindowPlatform& platform_;
    const InstallFilesController& installation_;
};

}  // namespace installer

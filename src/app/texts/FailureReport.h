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

    /// The items that could not be installed in the last run: name, folder and reason. Then the
    /// hosts that the run did not get to.
    [[nodiscard]] std::vector<ListRow> failedItems() const;
    [[nodiscard]] bool hasFailedItems() const { return !failedItems().empty(); }

    /// A text if administrator rights could not be had, were refused or lost in the last run, else
    /// empty.
    [[nodiscard]] std::string failureReason() const;

    /// Whether there is an installer log of the last run. The log of an earlier run, which a run
    /// that installs nothing leaves as it was, does not count.
    [[nodiscard]] bool installerLogExists() const;
    /// No-op without a log of the last run, as the next one.
    void openInstallerLog() const;
    /// Copies the log's text to the clipboard. False if it cannot be read.
    bool copyInstallerLog() const;
    /// Copies what the maker's support asks for: product, version, system, and what went wrong.
    void copyReport() const;

  private:
    [[nodiscard]] std::string installerLogPath() const;
    [[nodiscard]] std::string detailOf(const std::string& failedPath) const;
    [[nodiscard]] std::string report() const;

    WindowPlatform& platform_;
    const InstallFilesController& installation_;
};

}  // namespace installer

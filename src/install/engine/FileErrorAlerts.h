#pragma once

#include <string>

namespace installer {

struct InstallRun;
struct Platform;

/// Tells the user, and the system log, that an item could not be installed. Each report makes the
/// run a failed one, and returns when the user has dismissed it.
class FileErrorAlerts {
  public:
    FileErrorAlerts(Platform& platform, InstallRun& run) : platform_(platform), run_(run) {}

    /// The item at the path could not be installed; the run goes on with the next one.
    void showFileErrorUI(const std::string& path);

    /// Asks whether to go on after an error with a file: true when the user wants to. The answer
    /// to a file manager that asks its caller about errors; kept ready, none asks today.
    [[nodiscard]] bool fileManagerShouldProceedAfterError(const std::string& error,
                                                          const std::string& path);

  private:
    Platform& platform_;
    InstallRun& run_;
};

}  // namespace installer

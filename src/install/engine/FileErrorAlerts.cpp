#include "install/engine/FileErrorAlerts.h"

#include "foundation/text/Format.h"
#include "install/run/InstallProgress.h"
#include "install/run/InstallRun.h"
#include "ports/Alerts.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

/// The alert with its first button; the maker's format takes an error and a path.
Alert installErrorAlert(const Bundle& bundle, const std::string& error, const std::string& path) {
    Alert alert;
    alert.identifier = "install-error";
    alert.title = localizedText(bundle, "install_error_title");
    alert.message = formatted(localizedText(bundle, "install_error_format_string"), {error, path});
    alert.buttons = {localizedText(bundle, "install_error_proceed")};
    return alert;
}

/// How many more alerts will follow nobody knows: whether an item fails is seen when it is its
/// turn. The item's place among all items says how many can follow.
void numberAlert(Alert& alert, const InstallRun& run) {
    alert.number = run.failedPaths.size();
    if (run.progress == nullptr) return;
    const ProgressReport report = run.progress->report();
    alert.item = report.item;
    alert.items = report.items;
}

}  // namespace

void FileErrorAlerts::showFileErrorUI(const std::string& path) {
    run_.recordFailure(path);
    platform_.log.log(formatted("Could not install file: %@", {path}));
    // There is one button, so there is nothing to learn from the answer.
    Alert alert = installErrorAlert(platform_.bundle, "", path);
    numberAlert(alert, run_);
    static_cast<void>(platform_.alerts.runModal(alert));
}

bool FileErrorAlerts::fileManagerShouldProceedAfterError(const std::string& error,
                                                         const std::string& path) {
    run_.recordFailure(path);
    platform_.log.log(formatted("File  operation error: %@ with file: %@", {error, path}));
    Alert alert = installErrorAlert(platform_.bundle, error, path);
    alert.identifier = "file-operation-error";
    alert.buttons.push_back(localizedText(platform_.bundle, "install_error_stop"));
    return platform_.alerts.runModal(alert) == 0;
}

}  // namespace installer

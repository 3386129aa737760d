#include "app/FailureReport.h"

#include <cstddef>

#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/window/Clipboard.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/LocalizedText.h"
#include "product/PlugInFilesModel.h"
#include "steps/install/InstallFilesController.h"

namespace installer {

namespace {

constexpr std::size_t largestLog = std::size_t{64} << 20;

}  // namespace

std::vector<ListRow> FailureReport::failedItems() const {
    std::vector<ListRow> rows;
    for (const std::string& path : installation_.failedPaths()) {
        rows.push_back({.title = lastPathComponent(path), .detail = parentPath(path)});
    }
    return rows;
}

bool FailureReport::hasFailedItems() const {
    return !installation_.failedPaths().empty();
}

std::string FailureReport::failureReason() const {
    return installation_.authDenied() ? localizedText(platform_.bundle, "rights_refused") : "";
}

bool FailureReport::installerLogExists() const {
    return platform_.files.exists(installerLogPath());
}

void FailureReport::openInstallerLog() const {
    // A failure to open it is in the system log.
    static_cast<void>(platform_.workspace.openFile(installerLogPath()));
}

void FailureReport::copyInstallerLog() const {
    const Result<std::string> text = platform_.files.read(installerLogPath(), largestLog);
    if (text) platform_.clipboard.setText(text.value());
}

std::string FailureReport::installerLogPath() const {
    return PlugInFilesModel(platform_).installerLogPath();
}

}  // namespace installer

#include "app/texts/FailureReport.h"

#include <cstddef>

#include "app/texts/HostRows.h"
#include "app/texts/WindowTexts.h"
#include "foundation/text/Format.h"
#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"
#include "ports/Alerts.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/window/Clipboard.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/CouldNotOpenAlert.h"
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
        rows.push_back({.title = lastPathComponent(path), .detail = detailOf(path)});
    }
    for (const HostModel& host : installation_.leftOutHosts()) {
        rows.push_back({.title = formatted(localizedText(platform_.bundle, "host_left_out_fmt"),
                                           {host.hostName()}),
                        .detail = hostFolder(host)});
    }
    return rows;
}

std::string FailureReport::detailOf(const std::string& failedPath) const {
    const auto& reasons = installation_.failureReasons();
    const auto reason = reasons.find(failedPath);
    if (reason == reasons.end()) return parentPath(failedPath);
    return formatted(localizedText(platform_.bundle, "failed_item_fmt"),
                     {parentPath(failedPath), reason->second.shown});
}

std::string FailureReport::failureReason() const {
    const Bundle& bundle = platform_.bundle;
    if (installation_.authDenied()) return localizedText(bundle, "rights_refused");
    if (!installation_.authorizationFailed()) return "";
    std::string reason = localizedText(bundle, "auth_error");
    switch (installation_.authorizationTrouble()) {
        case AuthorizationTrouble::noWay:
            return reason + " " + localizedText(bundle, "rights_no_way");
        case AuthorizationTrouble::helperUnusable:
            return reason + " " + localizedText(bundle, "rights_no_helper");
        case AuthorizationTrouble::none:
            break;
    }
    return reason;
}

bool FailureReport::installerLogExists() const {
    return installation_.installerLogIsWritten() && platform_.files.exists(installerLogPath());
}

void FailureReport::openInstallerLog() const {
    if (!installerLogExists()) return;
    const std::string path = installerLogPath();
    if (platform_.workspace.openFile(path)) return;
    // The alert has one button, so the answer is ignored.
    static_cast<void>(platform_.alerts.runModal(couldNotOpenAlert(platform_.bundle, path)));
}

bool FailureReport::copyInstallerLog() const {
    if (!installerLogExists()) return false;
    const Result<std::string> text = platform_.files.read(installerLogPath(), largestLog);
    if (text) platform_.clipboard.setText(text.value());
    return static_cast<bool>(text);
}

void FailureReport::copyReport() const {
    platform_.clipboard.setText(report());
}

/// In English, as the system log: support reads it, whatever language the user has.
std::string FailureReport::report() const {
    const Bundle& bundle = platform_.bundle;
    std::string text = formatted("Product: %@ (%@)\n", {productName(bundle), companyName(bundle)});
    const auto add = [&text](const char* name, const std::string& value) {
        if (!value.empty()) text += std::string(name) + ": " + value + "\n";
    };
    add("Version", bundle.informationValue("CFBundleShortVersionString").value_or(""));
    add("System", platform_.workspace.systemDescription());
    add("Outcome", formatted("%@, %@ items installed",
                             {installation_.successfulInstall() ? "complete" : "not complete",
                              std::to_string(installation_.installedPaths().size())}));
    add("Reason", failureReason());
    for (const std::string& path : installation_.failedPaths()) {
        const auto reason = installation_.failureReasons().find(path);
        const bool isKnown = reason != installation_.failureReasons().end();
        add("Failed", isKnown ? formatted("%@ (%@)", {path, reason->second.logged}) : path);
    }
    for (const HostModel& host : installation_.leftOutHosts()) {
        add("Left out", formatted("%@ (%@)", {host.hostName(), hostFolder(host)}));
    }
    return text;
}

std::string FailureReport::installerLogPath() const {
    return PlugInFilesModel(platform_).installerLogPath();
}

}  // namespace installer

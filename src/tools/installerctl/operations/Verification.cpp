#include "tools/installerctl/operations/Verification.h"

#include <algorithm>
#include <set>

#include "foundation/text/Text.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"
#include "tools/installerctl/operations/Comparison.h"
#include "tools/installerctl/operations/RunPlan.h"
#include "tools/installerctl/operations/Summaries.h"
#include "tools/installerctl/output/ProgressBar.h"
#include "tools/installerctl/records/EntryMap.h"

namespace installer {

namespace {

constexpr std::size_t longestLog = std::size_t{64} << 20U;

void judge(ReportedItem& item, const ItemComparison& found) {
    item.differences = found.changed;
    item.differences.insert(item.differences.end(), found.missing.begin(), found.missing.end());
    for (const std::string& path : topmost(found.extra)) {
        item.differences.push_back({path, "was not installed"});
    }
    if (!found.isThere) {
        item.result = "missing";
        item.differences.clear();
    } else if (!found.changed.empty() || !found.missing.empty()) {
        item.result = "changed";
    } else {
        item.result = found.extra.empty() ? "ok" : "extra";
    }
}

/// What somebody has put beside the product's own files is told, and is no fault of theirs: nor is
/// it one to an installation, which would say that nothing differs.
ExitStatus concluded(Report& report) {
    const auto extra = std::ranges::count(report.items, "extra", &ReportedItem::result);
    const auto good = std::ranges::count(report.items, "ok", &ReportedItem::result) + extra;
    report.summary = std::to_string(good) + " of " + std::to_string(report.items.size()) +
                     " items are as they must be, by the " + report.basis;
    if (extra > 0) report.summary += "; somebody has added to " + std::to_string(extra);
    const bool isGood = static_cast<std::size_t>(good) == report.items.size();
    return isGood ? ExitStatus::done : ExitStatus::differences;
}

std::uint64_t bytesOf(const Receipt& receipt) {
    std::uint64_t bytes = 0;
    for (const EntryRecord& file : receipt.files) bytes += file.size;
    return bytes;
}

/// The lines of the installer log; nullopt if there is none.
std::optional<std::vector<std::string>> loggedPaths(const Session& session) {
    Platform platform = session.machine().platform();
    const auto text =
        platform.files.read(PlugInFilesModel(platform).installerLogPath(), longestLog);
    if (!text) return std::nullopt;
    std::vector<std::string> paths = split(text.value(), '\n');
    std::erase(paths, "");
    return paths;
}

void verifyLogged(const Session& session, const RunPlan& plan, const std::string& path,
                  Report& report) {
    const auto planned = std::ranges::find(plan.items, path, &ReportedItem::destination);
    ReportedItem item;
    if (planned != plan.items.end()) {
        item = *planned;
        item.action.clear();
        item.lost.clear();
        judge(item, compareItem(path, plan.expected, session.links()));
    } else {
        item.destination = path;
        item.result = session.machine().files().exists(path) ? "ok" : "missing";
        report.basis = "log";
    }
    report.items.push_back(std::move(item));
}

}  // namespace

ExitStatus verifyReceipt(const Session& session, const Receipt& receipt, Report& report) {
    report.basis = "receipt";
    for (const auto& host : receipt.hosts) {
        report.hosts.push_back({host.name, host.user, host.application, host.plugIns, ""});
    }
    EntryMap recorded;
    for (const EntryRecord& file : receipt.files) recorded.add(file);
    ProgressBar bar("Verifying", bytesOf(receipt));
    std::set<std::string> seen;
    for (const auto& item : receipt.items) {
        // The last of several items at one place is the one that is there.
        if (!seen.insert(item.destination).second) continue;
        ReportedItem reported = reportedItem(item);
        judge(reported, compareItem(item.destination, recorded, session.links(),
                                    [&bar](std::uint64_t bytes) { bar.add(bytes); }));
        report.items.push_back(std::move(reported));
    }
    const ExitStatus status = concluded(report);
    if (receipt.isComplete) return status;
    report.summary += "; the installation did not get to its end";
    return ExitStatus::differences;
}

ExitStatus verifyLog(const Session& session, Report& report) {
    const auto paths = loggedPaths(session);
    if (!paths) {
        report.summary = "It is not installed: there is neither a receipt nor a log";
        return ExitStatus::notInstalled;
    }
    const RunPlan plan = makeRunPlan(session, nullptr);
    report.basis = plan.hasPayload ? "log and payload" : "log";
    std::set<std::string> seen;
    for (const std::string& path : *paths) {
        if (seen.insert(path).second) verifyLogged(session, plan, path, report);
    }
    return concluded(report);
}

}  // namespace installer

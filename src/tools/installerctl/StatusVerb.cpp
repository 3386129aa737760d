#include <memory>

#include <CLI/CLI.hpp>

#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"
#include "tools/installerctl/Verbs.h"
#include "tools/installerctl/operations/Summaries.h"

namespace installer {

namespace {

/// What the receipt says, without a look at the items.
ExitStatus describe(const Receipt& receipt, Report& report) {
    report.basis = "receipt";
    report.users.clear();
    for (const auto& user : receipt.users) report.users.push_back(user.login);
    for (const auto& host : receipt.hosts) {
        report.hosts.push_back({host.name, host.user, host.application, host.plugIns, ""});
    }
    for (const auto& item : receipt.items) {
        ReportedItem reported = reportedItem(item);
        reported.result = "recorded";
        report.items.push_back(std::move(reported));
    }
    report.summary = "Version " + receipt.version + " is installed, since " + receipt.since;
    if (receipt.isComplete) return ExitStatus::done;
    report.summary = "An installation of version " + receipt.version + " did not get to its end";
    return ExitStatus::itemsFailed;
}

ExitStatus status(Session& session, Report& report) {
    ExitStatus result = ExitStatus::done;
    const auto receipt = trustedReceipt(session, report, result);
    if (result != ExitStatus::done) return result;
    if (receipt) return describe(*receipt, report);
    Platform platform = session.machine().platform();
    const std::string log = PlugInFilesModel(platform).installerLogPath();
    if (platform.files.exists(log)) {
        report.basis = "log";
        report.summary = "It is installed, but not by installerctl: there is only the log " + log;
        return ExitStatus::done;
    }
    report.summary = "It is not installed";
    return ExitStatus::notInstalled;
}

}  // namespace

void addStatusVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand(
        "status", "Say what is installed: which version, for whom, since when");
    const auto options = std::make_shared<CommonOptions>();
    addCommonOptions(*verb, *options);
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options] { return runVerb(*options, "status", status); };
    });
}

}  // namespace installer

#include "tools/installerctl/Verbs.h"

#include <iostream>

#include <CLI/CLI.hpp>

#include "linux/log/LinuxSystemLog.h"
#include "tools/installerctl/machine/Notes.h"
#include "tools/terminal/Colors.h"

namespace installer {

namespace {

void print(const Report& report, const CommonOptions& options, ExitStatus status) {
    if (options.json) {
        std::cout << jsonOf(report, static_cast<int>(status));
        return;
    }
    std::cout << textOf(report, isStandardOutputTerminal(),
                        colorsOfStandardOutput() == Colors::terminal);
}

}  // namespace

void addCommonOptions(CLI::App& verb, CommonOptions& options) {
    verb.add_flag("--json", options.json, "Print one JSON object for other programs");
    verb.add_option("--user", options.scope.users.logins,
                    "For this user; as root, and more than once for more users")
        ->type_name("LOGIN")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    verb.add_flag("--all-users", options.scope.users.everybody, "For every person's account");
    verb.add_option("--target", options.scope.target, "On the disk whose root is DIR")
        ->type_name("DIR");
}

ExitStatus runVerb(const CommonOptions& options, const std::string& command,
                   const std::function<ExitStatus(Session&, Report&)>& work) {
    Session::Refusal refusal;
    const auto session = Session::open(options.scope, refusal);
    Report report;
    ExitStatus status = refusal.status;
    if (session) {
        report = session->report(command);
        status = work(*session, report);
    } else {
        report.command = command;
        report.summary = refusal.reason;
        tellPeople(refusal.reason);
    }
    if (session || options.json) print(report, options, status);
    // People have read it; the system log gets the one line.
    LinuxSystemLog("installerctl", "/dev/log", LinuxSystemLog::Echo::none)
        .log(command + " " + report.product + " " + report.version + ": " + report.summary);
    return status;
}

std::optional<Receipt> trustedReceipt(const Session& session, Report& report, ExitStatus& status) {
    ReceiptFolder::Found found = session.receipts().read(session.product().identifier);
    status = ExitStatus::done;
    if (!found.problem.empty()) {
        status = ExitStatus::itemsFailed;
        const std::string file = session.receipts().fileOf(session.product().identifier);
        report.failed.push_back({file, found.problem});
        report.summary = "The receipt " + file + " is not to be trusted (" + found.problem +
                         "). Nothing was done. Remove it if you know why it is there";
        tellPeople(report.summary);
    }
    if (found.receipt) {
        report.installedVersion = found.receipt->version;
        report.since = found.receipt->since;
    }
    return std::move(found.receipt);
}

ExitStatus lockedOut(Report& report) {
    report.summary = "Another run is at work on this disk";
    tellPeople(report.summary);
    return ExitStatus::locked;
}

}  // namespace installer

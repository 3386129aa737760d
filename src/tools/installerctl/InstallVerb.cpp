#include <chrono>
#include <memory>

#include <CLI/CLI.hpp>

#include "tools/installerctl/Verbs.h"
#include "tools/installerctl/machine/RunLock.h"
#include "tools/installerctl/operations/InstallationRun.h"

namespace installer {

namespace {

struct InstallOptions {
    CommonOptions common;
    InstallationRules rules;
    unsigned waitSeconds = 0;
};

ExitStatus install(Session& session, Report& report, const InstallOptions& options) {
    InstallationRules rules = options.rules;
    rules.deadline = std::chrono::steady_clock::now() + std::chrono::seconds(options.waitSeconds);
    const RunLock lock(session.diskRoot(), rules.deadline);
    if (!lock.isHeld()) return lockedOut(report);
    ExitStatus status = ExitStatus::done;
    const auto last = trustedReceipt(session, report, status);
    if (status != ExitStatus::done) return status;
    return installProduct(session, last ? &*last : nullptr, rules, report);
}

}  // namespace

void addInstallVerb(const CommandLine& line) {
    CLI::App* verb =
        line.app.add_subcommand("install", "Install what differs from the plan, and record it");
    const auto options = std::make_shared<InstallOptions>();
    addCommonOptions(*verb, options->common);
    verb->add_flag("--require-host", options->rules.requireHost,
                   "Install nothing if no host is found");
    verb->add_flag("--allow-downgrade", options->rules.allowDowngrade,
                   "Install an older version over a newer one");
    verb->add_flag("--keep-user-files", options->rules.keepUserFiles,
                   "Keep what users put into folders that are replaced; as root");
    verb->add_option("--wait", options->waitSeconds,
                     "Wait so long for another run, and for hosts to end")
        ->type_name("SECONDS");
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options] {
            return runVerb(options->common, "install", [&](Session& session, Report& report) {
                return install(session, report, *options);
            });
        };
    });
}

}  // namespace installer

#include <chrono>
#include <memory>

#include <CLI/CLI.hpp>

#include "tools/installerctl/Verbs.h"
#include "tools/installerctl/machine/Notes.h"
#include "tools/installerctl/machine/RunLock.h"
#include "tools/installerctl/operations/RemovalRun.h"

namespace installer {

namespace {

struct RemoveOptions {
    CommonOptions common;
    bool dryRun = false;
    unsigned waitSeconds = 0;
};

ExitStatus remove(Session& session, Report& report, const RemoveOptions& options) {
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::seconds(options.waitSeconds);
    const RunLock lock(session.diskRoot(), deadline);
    if (!lock.isHeld()) return lockedOut(report);
    ExitStatus status = ExitStatus::done;
    const auto receipt = trustedReceipt(session, report, status);
    if (status != ExitStatus::done) return status;
    if (!receipt) {
        if (!options.dryRun) removeEmptyReceiptFolder(session);
        report.summary = "There is no receipt: installerctl has not installed it";
        tellPeople(report.summary);
        return ExitStatus::notInstalled;
    }
    return removeProduct(session, *receipt,
                         options.dryRun ? RemovalDepth::dryRun : RemovalDepth::remove, report);
}

}  // namespace

void addRemoveVerb(const CommandLine& line) {
    CLI::App* verb =
        line.app.add_subcommand("remove", "Take back what was installed and is unchanged");
    const auto options = std::make_shared<RemoveOptions>();
    addCommonOptions(*verb, options->common);
    verb->add_flag("--dry-run", options->dryRun, "Only say what would be removed");
    verb->add_option("--wait", options->waitSeconds, "Wait so long for another run")
        ->type_name("SECONDS");
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options] {
            return runVerb(options->common, "remove", [&](Session& session, Report& report) {
                return remove(session, report, *options);
            });
        };
    });
}

}  // namespace installer

#include <algorithm>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/installerctl/Verbs.h"
#include "tools/installerctl/operations/RunPlan.h"
#include "tools/installerctl/operations/Summaries.h"

namespace installer {

namespace {

ExitStatus plan(Session& session, Report& report) {
    ExitStatus status = ExitStatus::done;
    const auto last = trustedReceipt(session, report, status);
    if (status != ExitStatus::done) return status;
    const RunPlan plan = makeRunPlan(session, last ? &*last : nullptr);
    addPlan(report, plan, last.has_value());
    if (!plan.hasPayload) return withoutPayload(report);
    report.changed = plan.itemsDiffer() || plan.receiptDiffers;
    report.summary = planSummary(report);
    if (report.changed) return ExitStatus::differences;
    return plan.refused.empty() ? ExitStatus::done : ExitStatus::itemsFailed;
}

}  // namespace

void addPlanVerb(const CommandLine& line) {
    CLI::App* verb =
        line.app.add_subcommand("plan", "Say what an installation would do now; write nothing");
    const auto options = std::make_shared<CommonOptions>();
    addCommonOptions(*verb, *options);
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options] { return runVerb(*options, "plan", plan); };
    });
}

}  // namespace installer

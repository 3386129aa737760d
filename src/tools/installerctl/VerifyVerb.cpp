#include <memory>

#include <CLI/CLI.hpp>

#include "tools/installerctl/Verbs.h"
#include "tools/installerctl/operations/Verification.h"

namespace installer {

namespace {

ExitStatus verify(Session& session, Report& report) {
    ExitStatus status = ExitStatus::done;
    const auto receipt = trustedReceipt(session, report, status);
    if (status != ExitStatus::done) return status;
    return receipt ? verifyReceipt(session, *receipt, report) : verifyLog(session, report);
}

}  // namespace

void addVerifyVerb(const CommandLine& line) {
    CLI::App* verb =
        line.app.add_subcommand("verify", "Compare what is installed with what must be there");
    const auto options = std::make_shared<CommonOptions>();
    addCommonOptions(*verb, *options);
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options] { return runVerb(*options, "verify", verify); };
    });
}

}  // namespace installer

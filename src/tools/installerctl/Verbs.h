#pragma once

#include <functional>
#include <memory>

#include "tools/installerctl/operations/ExitStatus.h"
#include "tools/installerctl/operations/Session.h"

namespace CLI {
class App;
}  // namespace CLI

namespace installer {

/// What a verb does once the command line has been read.
using VerbAction = std::function<ExitStatus()>;

/// The command line under construction. Each verb adds itself, with its options, and says through
/// `chosen` what is to be done when it was named.
struct CommandLine {
    CLI::App& app;
    VerbAction& chosen;
};

/// What every verb but help takes.
struct CommonOptions {
    Scope scope;
    bool json = false;
};

// One file each.
void addPlanVerb(const CommandLine& line);
void addInstallVerb(const CommandLine& line);
void addVerifyVerb(const CommandLine& line);
void addRemoveVerb(const CommandLine& line);
void addStatusVerb(const CommandLine& line);
void addHelpVerb(const CommandLine& line);

/// Adds the options that every verb but help takes.
void addCommonOptions(CLI::App& verb, CommonOptions& options);

/// Opens the session, lets `work` fill the report, and prints it.
[[nodiscard]] ExitStatus runVerb(const CommonOptions& options, const std::string& command,
                                 const std::function<ExitStatus(Session&, Report&)>& work);

/// The product's own receipt. A file that is not to be trusted ends the verb: `status` is then no
/// success, and the report says why.
[[nodiscard]] std::optional<Receipt> trustedReceipt(const Session& session, Report& report,
                                                    ExitStatus& status);

/// Says that another run holds the lock.
[[nodiscard]] ExitStatus lockedOut(Report& report);

}  // namespace installer

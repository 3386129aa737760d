#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "linux/process/ProcessSetup.h"
#include "tools/installerctl/Verbs.h"

// The program for administrators: what an installation would do, did, and how to take it back.

namespace {

using namespace installer;

ExitStatus run(int argc, char** argv) {
    CLI::App app("Plans, installs, verifies and removes the product of this bundle.",
                 "installerctl");
    app.set_version_flag("--version", "installerctl " INSTALLERCTL_VERSION);
    app.require_subcommand(1);
    VerbAction chosen;
    const CommandLine line{app, chosen};
    addPlanVerb(line);
    addVerifyVerb(line);
    addStatusVerb(line);
    addHelpVerb(line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Help and version are asked for through the same door.
        return app.exit(error) == 0 ? ExitStatus::done : ExitStatus::wrongUse;
    }
    return chosen();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        prepareProcess();
        return static_cast<int>(run(argc, argv));
    } catch (const std::exception& error) {
        std::cerr << "installerctl: " << error.what() << '\n';
        return static_cast<int>(ExitStatus::itemsFailed);
    }
}

#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "linux/process/ProcessSetup.h"
#include "tools/mkinstaller/Verbs.h"

// The program for makers: from their sources to a file for a customer.

namespace {

using namespace installer;

ExitStatus run(int argc, char** argv) {
    CLI::App app("Makes installers of plug-ins: begins, checks, tries and packs them.",
                 "mkinstaller");
    app.set_version_flag("--version", "mkinstaller " MKINSTALLER_VERSION);
    app.require_subcommand(1);
    VerbAction chosen;
    const CommandLine line{app, chosen};
    addNewVerb(line);
    addLintVerb(line);
    addBuildVerb(line);
    addTryVerb(line);
    addPackVerb(line);
    addKeygenVerb(line);
    addHelpVerb(line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Help and version are asked for through the same door.
        return app.exit(error) == 0 ? ExitStatus::fine : ExitStatus::wrongUse;
    }
    const auto kit = Kit::ofRunningProgram();
    if (!kit) {
        std::cerr << "mkinstaller: the folder \"runtime\" is missing beside the program\n";
        return ExitStatus::errorsFound;
    }
    return chosen(*kit);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        prepareProcess();
        return static_cast<int>(run(argc, argv));
    } catch (const std::exception& error) {
        std::cerr << "mkinstaller: " << error.what() << '\n';
        return static_cast<int>(ExitStatus::errorsFound);
    }
}

#pragma once

#include <functional>

#include "tools/mkinstaller/ExitStatus.h"
#include "tools/mkinstaller/sources/Kit.h"

namespace CLI {
class App;
}  // namespace CLI

namespace installer {

/// What a verb does once the command line has been read.
using VerbAction = std::function<ExitStatus(const Kit& kit)>;

/// The command line under construction. Each verb adds itself, with its options, and says through
/// `chosen` what is to be done when it was named.
struct CommandLine {
    CLI::App& app;
    VerbAction& chosen;
};

// One file each.
void addNewVerb(const CommandLine& line);
void addLintVerb(const CommandLine& line);
void addBuildVerb(const CommandLine& line);
void addTryVerb(const CommandLine& line);
void addKeygenVerb(const CommandLine& line);
void addPackVerb(const CommandLine& line);
void addHelpVerb(const CommandLine& line);

}  // namespace installer

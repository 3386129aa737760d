#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/installerctl/Verbs.h"

namespace installer {

namespace {

ExitStatus help(CLI::App& app, const std::string& topic) {
    if (topic.empty()) {
        std::cout << app.help();
        return ExitStatus::done;
    }
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (verb->get_name() != topic) continue;
        std::cout << verb->help("installerctl");
        return ExitStatus::done;
    }
    std::cerr << "installerctl: there is no verb \"" << topic << "\"\n";
    return ExitStatus::wrongUse;
}

}  // namespace

void addHelpVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("help", "Explain a verb");
    const auto topic = std::make_shared<std::string>();
    verb->add_option("VERB", *topic, "The verb");
    verb->callback([topic, &app = line.app, &chosen = line.chosen] {
        chosen = [topic, &app] { return help(app, *topic); };
    });
}

}  // namespace installer

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "foundation/text/Text.h"
#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/lint/basis/FindingKinds.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

/// The section of the explanations whose heading begins with the code, up to the next heading;
/// empty without one.
std::string sectionOf(const std::string& explanations, std::string_view code) {
    const auto start = explanations.find("## " + std::string(code) + " ");
    if (start == std::string::npos) return {};
    const auto end = std::min(explanations.find("\n## ", start), explanations.find("\n# ", start));
    std::string section =
        explanations.substr(start + 3, std::min(end, explanations.size()) - start - 3);
    while (section.ends_with('\n')) section.pop_back();
    return section + "\n";
}

ExitStatus explain(const FindingKind& kind, const Kit& kit) {
    const std::string section = sectionOf(contentsOf(kit.explanations()).value_or(""), kind.code);
    if (section.empty()) {
        std::cout << kind.code << ": " << kind.title << '\n';
    } else {
        std::cout << section;
    }
    return ExitStatus::fine;
}

ExitStatus help(CLI::App& app, const std::string& topic, const Kit& kit) {
    if (topic.empty()) {
        std::cout << app.help();
        return ExitStatus::fine;
    }
    std::string code = topic;
    if (code.starts_with('m')) code.front() = 'M';
    if (const FindingKind* kind = findingKind(code)) return explain(*kind, kit);
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (verb->get_name() != topic) continue;
        std::cout << verb->help("mkinstaller");
        return ExitStatus::fine;
    }
    std::cerr << "mkinstaller: there is no help on \"" << topic << "\"\n";
    return ExitStatus::wrongUse;
}

}  // namespace

void addHelpVerb(const CommandLine& line) {
    CLI::App* verb =
        line.app.add_subcommand("help", "Explain a verb, or what lint found by its code");
    const auto topic = std::make_shared<std::string>();
    verb->add_option("TOPIC", *topic, "A verb, or a code such as M014");
    verb->callback([topic, &app = line.app, &chosen = line.chosen] {
        chosen = [topic, &app](const Kit& kit) { return help(app, *topic, kit); };
    });
}

}  // namespace installer

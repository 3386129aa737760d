#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "ports/SystemLog.h"
#include "tools/mkinstaller/FindingOutput.h"
#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/lint/Linter.h"

namespace installer {

namespace {

struct LintOptions {
    std::string product;
    bool json = false;
    bool strict = false;
};

/// Notes are no findings: they must not be in the way of a program that reads these.
class NotesOnStandardError final : public SystemLog {
  public:
    void log(std::string_view line) override { std::cerr << "mkinstaller: " << line << '\n'; }
};

ExitStatus lintProduct(const LintOptions& options, const Kit& kit) {
    const auto product = Product::at(options.product);
    if (!product) {
        std::cerr << "mkinstaller: " << options.product << " is no folder\n";
        return ExitStatus::wrongUse;
    }
    const Strictness strictness =
        options.strict ? Strictness::warningsAreErrors : Strictness::warningsAllowed;
    NotesOnStandardError notes;
    const std::vector<Finding> findings = lint(*product, kit, notes);
    if (options.json) {
        std::cout << jsonOf(options.product, findings, strictness);
    } else {
        const Colors colors = colorsOfStandardOutput();
        for (const Finding& finding : findings) {
            std::cout << lineOf(finding, strictness, colors) << '\n';
        }
    }
    const bool hasErrors = std::ranges::any_of(findings, [&](const Finding& finding) {
        return severityOf(finding, strictness) == Severity::error;
    });
    return hasErrors ? ExitStatus::errorsFound : ExitStatus::fine;
}

}  // namespace

void addLintVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("lint", "Say what is wrong with a product");
    const auto options = std::make_shared<LintOptions>();
    verb->add_option("PRODUCT", options->product, "The folder that \"new\" made, or a bundle")
        ->required();
    verb->add_flag("--json", options->json, "Print one JSON value for other programs");
    verb->add_flag("--strict", options->strict, "Make warnings errors");
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options](const Kit& kit) { return lintProduct(*options, kit); };
    });
}

}  // namespace installer

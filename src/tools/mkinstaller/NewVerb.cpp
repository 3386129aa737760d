#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/making/NewProduct.h"

namespace installer {

namespace {

struct NewOptions {
    std::string folder;
    NewProductNames names;
};

ExitStatus makeNew(const NewOptions& options, const Kit& kit) {
    if (const auto problem = problemOf(options.names, kit)) {
        std::cerr << "mkinstaller: " << *problem << '\n';
        return ExitStatus::wrongUse;
    }
    if (const auto failure = makeProduct(options.folder, options.names, kit)) {
        std::cerr << "mkinstaller: " << *failure << '\n';
        return ExitStatus::wrongUse;
    }
    std::cout << "Made " << options.folder << ". Its README.md says what belongs where.\n";
    return ExitStatus::fine;
}

}  // namespace

void addNewVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("new", "Make the folder of a small whole product");
    const auto options = std::make_shared<NewOptions>();
    verb->add_option("DIR", options->folder, "The folder to make; empty, or not there yet")
        ->required();
    verb->add_option("--company", options->names.company, "Who makes the product")
        ->type_name("NAME")
        ->required();
    verb->add_option("--product", options->names.product, "What the product is called")
        ->type_name("NAME")
        ->required();
    verb->add_option("--id", options->names.identifier, "Its identifier, as com.example.filters")
        ->type_name("IDENT")
        ->required();
    verb->add_option("--website", options->names.website,
                     "Where its pages are; by default the identifier's domain")
        ->type_name("HOST");
    verb->add_option("--languages", options->names.languages,
                     "The languages of its texts, as en,de,ja; by default all that there are")
        ->type_name("LANG,...")
        ->delimiter(',');
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options](const Kit& kit) { return makeNew(*options, kit); };
    });
}

}  // namespace installer

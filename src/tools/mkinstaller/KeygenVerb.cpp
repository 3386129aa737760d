#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/signing/Signing.h"

namespace installer {

namespace {

ExitStatus makeKey(const std::string& file) {
    if (const auto failure = writeNewKey(file)) {
        std::cerr << "mkinstaller: " << *failure << '\n';
        return ExitStatus::errorsFound;
    }
    std::cout << "Made " << file << ", which nobody else may get, and " << file
              << ".pub, which everybody may.\n";
    return ExitStatus::fine;
}

}  // namespace

void addKeygenVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("keygen", "Make a key to sign files with");
    const auto file = std::make_shared<std::string>();
    verb->add_option("FILE", *file, "The secret key; the public one becomes FILE.pub")->required();
    verb->callback([file, &chosen = line.chosen] {
        chosen = [file](const Kit& /*kit*/) { return makeKey(*file); };
    });
}

}  // namespace installer

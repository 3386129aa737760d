#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "linux/log/LinuxSystemLog.h"
#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/making/BundleAssembly.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

namespace {

struct BuildOptions {
    std::string product;
    std::string output = ".";
};

ExitStatus build(const BuildOptions& options, const Kit& kit) {
    const auto product = Product::at(options.product);
    if (!product) {
        std::cerr << "mkinstaller: " << options.product << " is no folder\n";
        return ExitStatus::wrongUse;
    }
    LinuxSystemLog log("mkinstaller");
    const auto bundle = assembleBundle(*product, kit, options.output, log);
    if (!bundle) {
        std::cerr << "mkinstaller: the bundle could not be put together: "
                  << bundle.error().message()
                  << "; \"mkinstaller lint\" says what is wrong with the product\n";
        return ExitStatus::errorsFound;
    }
    std::cout << bundle.value() << '\n';
    return ExitStatus::fine;
}

}  // namespace

void addBuildVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("build", "Put the installer's bundle together");
    const auto options = std::make_shared<BuildOptions>();
    verb->add_option("PRODUCT", options->product, "The folder that \"new\" made, or a bundle")
        ->required();
    verb->add_option("--output", options->output, "Where to put the bundle")
        ->type_name("DIR")
        ->capture_default_str();
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options](const Kit& kit) { return build(*options, kit); };
    });
}

}  // namespace installer

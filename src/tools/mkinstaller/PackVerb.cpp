#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "foundation/values/Paths.h"
#include "linux/log/LinuxSystemLog.h"
#include "tools/mkinstaller/ProductCheck.h"
#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/packing/Formats.h"
#include "tools/mkinstaller/packing/PackSource.h"
#include "tools/mkinstaller/packing/Toolkit.h"
#include "tools/mkinstaller/signing/Signing.h"

namespace installer {

namespace {

struct PackOptions {
    std::string product;
    std::vector<std::string> formats = {"run"};
    std::string output = ".";
    std::string maintainer;
    std::string key;
    std::string compression = "gzip";
    bool withToolkit = false;

    [[nodiscard]] Compression compressionOfRunFiles() const {
        return compression == "zstd" ? Compression::zstd : Compression::gzip;
    }
};

Packed packAs(const std::string& format, const PackOptions& options, const PackSource& source,
              const Kit& kit, const std::string& folder) {
    if (format == "run") {
        return packRunFile(source, kit, options.compressionOfRunFiles(), folder);
    }
    if (format == "deb") return packDebPackage(source, folder);
    if (format == "rpm") return packRpmPackage(source, folder);
    return packTarFile(source, folder);
}

ExitStatus failed(const std::string& what) {
    std::cerr << "mkinstaller: " << what << '\n';
    return ExitStatus::errorsFound;
}

ExitStatus packAll(const PackOptions& options, const PackSource& source, const Kit& kit,
                   const std::optional<SigningKey>& key) {
    const std::string folder =
        withSingleSeparators(std::filesystem::absolute(options.output).string());
    std::filesystem::create_directories(folder);
    for (const std::string& format : options.formats) {
        const Packed packed = packAs(format, options, source, kit, folder);
        if (packed.failure) return failed(packed.file + " was not made: " + *packed.failure);
        if (key) {
            const auto failure = signFile(joinPath(folder, packed.file), *key, source.time);
            if (failure) return failed(*failure);
        }
        std::cout << joinPath(folder, packed.file) << std::endl;
    }
    return ExitStatus::fine;
}

/// The bundle is completed and sealed first: what is packed carries the seal.
ExitStatus sealAndPack(const PackOptions& options, const PackSource& source, const Kit& kit) {
    if (options.withToolkit) {
        if (const auto failure = addToolkit(source.bundle())) {
            return failed("the toolkit was not added: " + *failure);
        }
    }
    if (options.key.empty()) return packAll(options, source, kit, std::nullopt);
    std::string problem;
    const auto key = readKey(options.key, problem);
    if (!key) return failed("nothing was packed; the key " + options.key + ": " + problem);
    if (const auto failure = sealBundle(source.bundle(), *key, source.time))
        return failed(*failure);
    return packAll(options, source, kit, key);
}

ExitStatus pack(const PackOptions& options, const Kit& kit) {
    const auto product = Product::at(options.product);
    if (!product) {
        std::cerr << "mkinstaller: " << options.product << " is no folder\n";
        return ExitStatus::wrongUse;
    }
    LinuxSystemLog log("mkinstaller");
    if (!isFitForUse(*product, kit, log)) {
        std::cerr << "mkinstaller: nothing was packed; repair the errors first\n";
        return ExitStatus::errorsFound;
    }
    auto source = PackSource::make(*product, kit, log);
    if (!source) {
        return failed("the bundle could not be put together: " + source.error().message());
    }
    if (!options.maintainer.empty()) source.value().maintainer = options.maintainer;
    return sealAndPack(options, source.value(), kit);
}

}  // namespace

void addPackVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("pack", "Make files for customers");
    const auto options = std::make_shared<PackOptions>();
    verb->add_option("PRODUCT", options->product, "The folder that \"new\" made, or a bundle")
        ->required();
    verb->add_option("--format", options->formats, "Which files: run, tar, deb, rpm")
        ->type_name("FORMAT,...")
        ->delimiter(',')
        ->check(CLI::IsMember({"run", "tar", "deb", "rpm"}))
        ->default_str("run");
    verb->add_option("--output", options->output, "Where to put the files")
        ->type_name("DIR")
        ->capture_default_str();
    verb->add_option("--compression", options->compression,
                     "How a run file is compressed: gzip, which every system has, or zstd, which "
                     "unpacks faster where customers have it")
        ->type_name("NAME")
        ->check(CLI::IsMember({"gzip", "zstd"}))
        ->capture_default_str();
    verb->add_option("--maintainer", options->maintainer,
                     "Who answers for a package: NAME <ADDRESS>; by default the company, at the "
                     "identifier's domain")
        ->type_name("WHO");
    verb->add_option("--sign", options->key,
                     "Sign with the secret key that \"keygen\" made: seal the bundle, and write "
                     "FILE.minisig beside each file")
        ->type_name("KEY");
    verb->add_flag("--with-toolkit", options->withToolkit,
                   "Carry this machine's Qt and a font along, for machines without them");
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options](const Kit& kit) { return pack(*options, kit); };
    });
}

}  // namespace installer

#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "foundation/values/Paths.h"
#include "foundation/values/VisibleText.h"
#include "ports/SystemLog.h"
#include "tools/mkinstaller/ProductCheck.h"
#include "tools/mkinstaller/Verbs.h"
#include "tools/mkinstaller/packing/PackSource.h"
#include "tools/mkinstaller/trying/Trial.h"

namespace installer {

namespace {

struct TryOptions {
    std::string product;
    bool window = false;
    bool keep = false;
};

/// What goes wrong before the installer runs is told by itself.
class SilentLog final : public SystemLog {
  public:
    void log(std::string_view /*line*/) override {}
};

void say(const std::string& line) {
    std::cout << line << std::endl;
}

/// As the disk's own system sees it.
std::string onDisk(const Trial& trial, const std::string& path) {
    return visibleText(path.starts_with(trial.disk()) ? path.substr(trial.disk().size()) : path);
}

void showPlan(const Trial& trial) {
    const InstallPlan& plan = trial.plan();
    say("The plan: " + std::to_string(plan.items.size()) + " items for " +
        std::to_string(plan.hosts.size()) + " Photoshop releases");
    for (const PlannedItem& item : plan.mirrorItems())
        say("    " + onDisk(trial, item.destination));
    for (std::size_t host = 0; host < plan.hosts.size(); ++host) {
        say("  " + plan.hosts[host].hostName());
        for (const PlannedItem& item : plan.itemsOf(host)) {
            say("    " + onDisk(trial, item.destination));
        }
    }
    for (const LeftOutEntry& entry : plan.leftOut) {
        say("  left out: " + visibleText(lastPathComponent(entry.path)) + ": " +
            std::string(description(entry.reason)));
    }
}

bool installAndCompare(Trial& trial, const std::string& name) {
    std::string messages;
    const bool ended = trial.installQuietly(messages);
    const auto differences = trial.differences();
    if (ended && differences.empty()) {
        say(name + ": every item is where the plan says, and as it is in the payload");
        return true;
    }
    std::cerr << "mkinstaller: " << name << ": the disk is not as the plan says\n";
    for (const std::string& difference : differences) {
        std::cerr << "    " << visibleText(difference) << '\n';
    }
    std::cerr << "The installer said:\n" << messages;
    return false;
}

void showWhatCustomersSee(const Trial& trial) {
    say("What a customer sees");
    say("  before the password: " + visibleText(trial.question()));
    say("  to choose from:");
    for (const HostModel& host : trial.plan().hosts) say("    " + host.hostName());
    say("  beside the items:");
    for (const std::string& path : trial.filesBesideThePlan()) say("    " + visibleText(path));
}

bool tryOut(Trial& trial, const TryOptions& options) {
    showPlan(trial);
    if (options.window) {
        say("The window is open. It installs on the sample disk only.");
        return trial.openWindow();
    }
    if (!installAndCompare(trial, "Installed")) return false;
    if (!installAndCompare(trial, "Installed again")) return false;
    showWhatCustomersSee(trial);
    return true;
}

ExitStatus tryProduct(const TryOptions& options, const Kit& kit) {
    const auto product = Product::at(options.product);
    if (!product) {
        std::cerr << "mkinstaller: " << options.product << " is no folder\n";
        return ExitStatus::wrongUse;
    }
    SilentLog log;
    if (!isFitForUse(*product, kit, log)) {
        std::cerr << "mkinstaller: nothing was tried; repair the errors first\n";
        return ExitStatus::errorsFound;
    }
    const auto source = PackSource::make(*product, kit, log);
    if (!source) {
        std::cerr << "mkinstaller: the bundle could not be put together: "
                  << source.error().message() << '\n';
        return ExitStatus::errorsFound;
    }
    Trial trial(source.value(), log);
    const bool worked = tryOut(trial, options);
    if (options.keep) {
        trial.keepDisk();
        say("The sample disk: " + trial.disk());
    }
    return worked ? ExitStatus::fine : ExitStatus::errorsFound;
}

}  // namespace

void addTryVerb(const CommandLine& line) {
    CLI::App* verb = line.app.add_subcommand("try", "Install a product on a sample disk");
    const auto options = std::make_shared<TryOptions>();
    verb->add_option("PRODUCT", options->product, "The folder that \"new\" made, or a bundle")
        ->required();
    verb->add_flag("--window", options->window, "Open the installer's window on that disk");
    verb->add_flag("--keep", options->keep, "Keep the disk, and say where it is");
    verb->callback([options, &chosen = line.chosen] {
        chosen = [options](const Kit& kit) { return tryProduct(*options, kit); };
    });
}

}  // namespace installer

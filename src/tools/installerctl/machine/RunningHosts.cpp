#include "tools/installerctl/machine/RunningHosts.h"

#include <algorithm>

#include <unistd.h>

#include "foundation/values/Paths.h"
#include "linux/desktop/ApplicationName.h"
#include "linux/desktop/ProcessFacts.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"
#include "steps/running/RunningHostViewController.h"

namespace installer {

namespace {

/// The names of the applications that the payload has for /Applications.
std::vector<std::string> installedApplications(Platform& platform) {
    std::vector<std::string> names;
    const std::string folder =
        joinPath(PlugInFilesModel(platform).payloadFolder(), "HD/Applications");
    platform.files.walk(folder, WalkDepth::everything, [&](const WalkEntry& entry) {
        if (!entry.isPackage) return;
        const auto bundle = platform.bundles.open(entry.path);
        if (!bundle) return;
        if (const auto name = bundle->informationValue("CFBundleName")) names.push_back(*name);
    });
    return names;
}

/// The window counts its own person's applications; what is installed for a machine is everybody's.
std::vector<std::string> applicationsOfEverybody(Bundles& bundles) {
    std::vector<std::string> names;
    for (const pid_t process : listedProcesses()) {
        if (process == ::getpid()) continue;
        const auto facts = processFacts(process);
        if (facts) names.push_back(applicationName(*facts, bundles));
    }
    return names;
}

}  // namespace

std::optional<std::string> runningHost(Platform& platform, std::span<const HostModel> hosts) {
    std::vector<std::string> words;
    for (const HostModel& host : hosts) {
        words.push_back(RunningHostViewController::hostAppSearchString(host));
    }
    const std::vector<std::string> applications = installedApplications(platform);
    words.insert(words.end(), applications.begin(), applications.end());

    for (const std::string& application : applicationsOfEverybody(platform.bundles)) {
        const bool isMeant = std::ranges::any_of(
            words, [&](const std::string& word) { return isApplicationOfHost(application, word); });
        if (isMeant) return application;
    }
    return std::nullopt;
}

}  // namespace installer

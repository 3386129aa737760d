#include "tools/mkinstaller/trying/Trial.h"

#include <algorithm>
#include <system_error>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "app/texts/WindowTexts.h"
#include "foundation/values/Paths.h"
#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/Spawn.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/trying/SampleDisk.h"
#include "tools/mkinstaller/trying/TreeDifference.h"

namespace installer {

namespace {

/// The login name by which the installer will call this user.
std::string loginName() {
    auto paths = LinuxSearchPaths::fromEnvironment([](const std::string&) { return std::nullopt; });
    return paths ? paths.value().loginName() : "maker";
}

/// Starts it and waits. True if it ended by itself, with success.
bool runToItsEnd(const SpawnRequest& request) {
    const auto process = spawn(request);
    if (!process) return false;
    const auto status = waitForEnd(process.value());
    return status && WIFEXITED(status.value()) && WEXITSTATUS(status.value()) == 0;
}

InstallPlan planOn(Platform platform) {
    return makeInstallPlan(platform, foundHosts(HostDiscovery(platform).discoverHosts()));
}

}  // namespace

Trial::Trial(const PackSource& source, SystemLog& log)
    : source_(source), bundle_(source.bundle(), {"en"}, log), machine_(bundle_, log, loginName()) {
    if (const auto error = fillSampleDisk(machine_.disk(), loginName())) {
        throw std::system_error(error, "the sample disk cannot be made");
    }
    before_ = filesBelow(machine_.disk());
    plan_ = planOn(machine_.platform());
}

bool Trial::installQuietly(std::string& messages) {
    const std::string file = source_.newWorkFolder("trial") + "/messages";
    const FileDescriptor output(
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!output) return false;
    SpawnRequest request;
    request.path = "/usr/bin/env";
    request.arguments = {"--unset=DISPLAY", "--unset=WAYLAND_DISPLAY",
                         std::string(targetVolumeVariable) + "=" + machine_.disk(),
                         source_.bundle() + "/Contents/MacOS/Installer", "-quiet"};
    // A question for the password can be answered on the terminal.
    request.standardInput = SpawnRequest::own;
    request.standardOutput = output.get();
    request.standardError = output.get();
    const bool ended = runToItsEnd(request);
    messages = contentsOf(file).value_or("");
    return ended;
}

bool Trial::openWindow() const {
    SpawnRequest request;
    request.path = "/usr/bin/env";
    request.arguments = {std::string(targetVolumeVariable) + "=" + machine_.disk(),
                         source_.bundle() + "/Contents/MacOS/Installer"};
    request.standardInput = SpawnRequest::own;
    request.standardOutput = SpawnRequest::own;
    request.standardError = SpawnRequest::own;
    return runToItsEnd(request);
}

std::vector<std::string> Trial::differences() const {
    std::vector<std::string> found;
    for (const PlannedItem& item : plan_.items) {
        if (const auto difference = differenceOf(item.source, item.destination)) {
            found.push_back(*difference);
        }
    }
    for (const PlannedItem& item : plan_.refused) {
        found.push_back(item.destination + " is not installed: it lies in a folder of the system");
    }
    return found;
}

std::vector<std::string> Trial::filesBesideThePlan() const {
    std::vector<std::string> beside;
    for (const std::string& file : filesBelow(machine_.disk())) {
        const std::string path = joinPath(machine_.disk(), file);
        const bool isPlanned = std::ranges::any_of(plan_.items, [&](const PlannedItem& item) {
            return path == item.destination || path.starts_with(item.destination + "/");
        });
        if (!isPlanned && !before_.contains(file)) beside.push_back("/" + file);
    }
    return beside;
}

std::string Trial::question() const {
    return authorizationReason(bundle_);
}

}  // namespace installer

#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/QuietInstallation.h"
#include "foundation/Format.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/linux/LinuxApplicationDatabase.h"
#include "platform/linux/LinuxAuthorization.h"
#include "platform/linux/LinuxBundle.h"
#include "platform/linux/LinuxChildProcess.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/LinuxPreferencesStore.h"
#include "platform/linux/LinuxSearchPaths.h"
#include "platform/linux/LinuxSystemLog.h"
#include "platform/linux/PollEventLoop.h"
#include "platform/linux/ProcessSetup.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/TextAlerts.h"
#include "wizard/LocalizedText.h"

// Start-up: the one place that knows which adapters the core runs on.

namespace {

using namespace installer;

constexpr std::string_view quietArgument = "-quiet";

/// Whoever is asked for a password learns first which product asks, and what for.
AdministratorAccess administratorAccess(const std::string& bundleFolder, const Bundle& bundle,
                                        SystemLog& log) {
    const std::string reason = localizedText(
        bundle, "authorization_reason",
        "%@ by %@ needs administrator rights to install its files for all users of this machine.");
    return {.helperPath = joinPath(bundleFolder, "Contents/MacOS/privileged-helper"),
            .reason = formatted(
                reason, {folderName(bundle, "product_name"), folderName(bundle, "company_name")}),
            .announce = [&log](std::string_view line) { log.log(line); }};
}

/// Every adapter of a process without a window, and the platform that they make up.
class QuietApplication {
  public:
    QuietApplication(const std::string& bundleFolder, LinuxSearchPaths searchPaths, SystemLog& log)
        : log_(log),
          searchPaths_(std::move(searchPaths)),
          bundle_(bundleFolder, searchPaths_.preferredLanguages(), log),
          bundles_(searchPaths_.preferredLanguages(), log),
          authorizations_(administratorAccess(bundleFolder, bundle_, log)),
          preferences_(searchPaths_, log),
          applications_(searchPaths_, bundles_, log) {}

    void run() { installQuietly(platform_); }

  private:
    SystemLog& log_;
    LinuxSearchPaths searchPaths_;
    LinuxBundle bundle_;
    LinuxBundles bundles_;
    LinuxFileManager files_;
    LinuxAuthorizations authorizations_;
    PollEventLoop eventLoop_;
    LinuxChildProcesses processes_{eventLoop_};
    LinuxPreferencesStore preferences_;
    LinuxApplicationDatabase applications_;
    TextAlerts alerts_{log_};
    SystemClock clock_;
    NotificationCenter notifications_;
    Platform platform_{files_,  authorizations_, processes_,    eventLoop_,    preferences_,
                       bundle_, bundles_,        searchPaths_,  applications_, alerts_,
                       log_,    clock_,          notifications_};
};

void runQuietly(SystemLog& log) {
    const std::optional<std::string> bundleFolder = LinuxBundle::runningBundleFolder();
    if (!bundleFolder) {
        log.log("The installer must be started from its bundle: there is nothing to install");
        return;
    }
    Result<LinuxSearchPaths> searchPaths = LinuxSearchPaths::fromEnvironment(processEnvironment());
    if (!searchPaths) {
        const std::string volume = processEnvironment()(targetVolumeVariable).value_or("");
        log.log(std::string(targetVolumeVariable) + " names no folder to install onto: " + volume +
                " (" + searchPaths.error().message() + ")");
        return;
    }
    QuietApplication(*bundleFolder, std::move(searchPaths).value(), log).run();
}

/// The quiet installation ends with success whatever happened; what did happen is in the logs.
int quietMain() {
    LinuxSystemLog log("Installer");
    try {
        runQuietly(log);
    } catch (const std::exception& error) {
        log.log(std::string("The installation was broken off: ") + error.what());
    }
    return 0;
}

int windowMain() {
    std::fputs(
        "This installer has no window yet. Start it with -quiet as its first argument to install "
        "into every Photoshop that is found, without any question.\n",
        stderr);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    prepareProcess();
    // Compared as it stands: another letter case, or another place, is not the quiet argument.
    return argc >= 2 && argv[1] == quietArgument ? quietMain() : windowMain();
}

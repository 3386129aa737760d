#include "app/QuietInstallation.h"

#include <string>

#include "foundation/observers/NotificationCenter.h"
#include "foundation/text/Format.h"
#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"
#include "steps/install/InstallFilesController.h"

namespace installer {

namespace {

std::string outcome(const InstallFilesController& controller, const std::string& logPath) {
    const std::string count = std::to_string(controller.installedPaths().size());
    if (controller.authDenied()) {
        return formatted(
            "Administrator rights were refused or lost: the installation is not complete "
            "(%@ items installed)",
            {count});
    }
    if (controller.fileOpErrorOccurred()) {
        return formatted("The installation is not complete (%@ items installed)", {count});
    }
    if (!controller.installerLogIsWritten()) {
        return formatted("The installation is complete (%@ items installed)", {count});
    }
    return formatted("The installation is complete (%@ items installed, listed in %@)",
                     {count, logPath});
}

}  // namespace

void installQuietly(Platform& platform) {
    InstallFilesController controller(platform);
    // Nobody can be asked, so the external editors are always configured.
    controller.install(foundHosts(HostDiscovery(platform).discoverHosts()), true);
    platform.log.log(outcome(controller, PlugInFilesModel(platform).installerLogPath()));
    platform.notifications.post({applicationWillTerminate, nullptr, {}});
}

}  // namespace installer

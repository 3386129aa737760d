#include "app/QuietInstallation.h"

#include <string>
#include <vector>

#include "app/texts/HostRefusal.h"
#include "foundation/observers/NotificationCenter.h"
#include "foundation/text/Format.h"
#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "ports/Authorization.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"
#include "steps/install/InstallFilesController.h"

namespace installer {

namespace {

std::string reasonOf(AuthorizationTrouble trouble) {
    switch (trouble) {
        case AuthorizationTrouble::noWay:
            return ", because there is neither polkit nor sudo";
        case AuthorizationTrouble::helperUnusable:
            return ", because the privileged helper is missing or cannot be started";
        case AuthorizationTrouble::none:
            break;
    }
    return "";
}

std::string outcome(const InstallFilesController& controller, const std::string& logPath) {
    if (controller.authorizationFailed()) {
        return "Nothing was installed: administrator rights cannot be had" +
               reasonOf(controller.authorizationTrouble());
    }
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
    std::string text =
        controller.installerLogIsWritten()
            ? formatted("The installation is complete (%@ items installed, listed in %@)",
                        {count, logPath})
            : formatted("The installation is complete (%@ items installed)", {count});
    if (!controller.suppliedHosts().empty()) return text;
    return text + ". The plug-in was put into no Photoshop";
}

}  // namespace

void installQuietly(Platform& platform) {
    InstallFilesController controller(platform);
    // Nobody can be asked, so the external editors are always configured.
    const std::vector<HostModel> hosts = foundHosts(HostDiscovery(platform).discoverHosts());
    // Said and tried all the same: a quiet run is for every host that is found, and ends as
    // incomplete when it could not be.
    for (const HostModel& host : hosts) {
        const LinkRefusal refusal = linkRefusalOf(platform, host);
        if (refusal == LinkRefusal::none) continue;
        platform.log.log(formatted("%@: %@", {host.hostName(), description(refusal)}));
    }
    controller.install(hosts, true);
    for (const HostModel& host : controller.leftOutHosts()) {
        platform.log.log(formatted("%@: not installed", {host.hostName()}));
    }
    platform.log.log(outcome(controller, PlugInFilesModel(platform).installerLogPath()));
    platform.notifications.post({applicationWillTerminate, nullptr, {}});
}

}  // namespace installer

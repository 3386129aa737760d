#include "install/InstallerLog.h"

#include <string>

#include "foundation/Format.h"
#include "install/InstallRun.h"
#include "install/PlugInFilesModel.h"
#include "install/PrivilegedCommands.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

namespace installer {

void InstallerLog::logInstalledPaths() {
    if (run_.installedPaths.empty()) return;
    const std::string path = PlugInFilesModel(platform_).installerLogPath();
    commands_.renewLogFile(path);
    const auto file = platform_.files.openForWriting(path);
    if (!file) {
        platform_.log.log("can't open installer log file for writing");
        return;
    }
    std::string text;
    for (const std::string& installed : run_.installedPaths) text += installed + "\n";
    if (const auto error = file.value()->write(text)) {
        platform_.log.log(formatted("can't write to installer log file: %@", {error.message()}));
    }
}

}  // namespace installer

#include "install/after/InstallerLog.h"

#include <string>
#include <system_error>

#include "foundation/text/Format.h"
#include "install/rights/PrivilegedCommands.h"
#include "install/run/InstallRun.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"

namespace installer {

bool InstallerLog::logInstalledPaths() {
    if (run_.installedPaths.empty()) return false;
    const std::string path = PlugInFilesModel(platform_).installerLogPath();
    commands_.renewLogFile(path);
    const auto opened = platform_.files.openForWriting(path);
    if (!opened) {
        platform_.log.log("can't open installer log file for writing");
        return false;
    }
    std::string text;
    for (const std::string& installed : run_.installedPaths) text += installed + "\n";
    WritableFile& file = *opened.value();
    // The commands may have failed, and an old list that is longer would show behind the new one.
    std::error_code error = file.setSize(0);
    if (!error) error = file.write(text);
    if (!error) return true;
    platform_.log.log(formatted("can't write to installer log file: %@", {error.message()}));
    // The beginning of a path is the path of a folder above it, which is not what was installed.
    static_cast<void>(file.setSize(0));
    return false;
}

}  // namespace installer

#include "install/after/InstallerLog.h"

#include <cstddef>
#include <string>
#include <system_error>
#include <vector>

#include "foundation/text/Format.h"
#include "install/rights/PrivilegedCommands.h"
#include "install/run/InstallRun.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

std::string asLines(const std::vector<std::string>& paths) {
    std::size_t size = 0;
    for (const std::string& path : paths) size += path.size() + 1;
    std::string text;
    // There can be 100,000, and a text that grows takes up to three times its size.
    text.reserve(size);
    for (const std::string& path : paths) (text += path) += '\n';
    return text;
}

}  // namespace

bool InstallerLog::logInstalledPaths() {
    if (run_.installedPaths.empty()) return false;
    const std::string path = PlugInFilesModel(platform_).installerLogPath();
    commands_.renewLogFile(path);
    const auto opened = platform_.files.openForWriting(path);
    if (!opened) {
        platform_.log.log("can't open installer log file for writing");
        return false;
    }
    const std::string text = asLines(run_.installedPaths);
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

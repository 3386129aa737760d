#include "install/after/InstallIdentifier.h"

#include <string>

#include "foundation/text/Format.h"
#include "foundation/values/Uuid.h"
#include "install/rights/PrivilegedCommands.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"

namespace installer {

void InstallIdentifier::installAnalytics() {
    const std::string text = newUuidText() + "\n";
    const std::string path = PlugInFilesModel(platform_).identifierPath();
    if (platform_.files.exists(path)) return;
    commands_.makeIdentifierFile(path);
    const auto file = platform_.files.openForWriting(path);
    if (!file) {
        platform_.log.log("can't open guid file handle");
        return;
    }
    if (const auto error = file.value()->write(text)) {
        platform_.log.log(formatted("can't write to guid file: %@", {error.message()}));
    }
}

}  // namespace installer

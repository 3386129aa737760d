#include "install/InstallIdentifier.h"

#include <string>

#include "foundation/Format.h"
#include "foundation/Paths.h"
#include "foundation/Uuid.h"
#include "install/PlugInFilesModel.h"
#include "install/PrivilegedCommands.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

namespace installer {

void InstallIdentifier::installAnalytics() {
    const std::string text = newUuidText() + "\n";
    const std::string path = joinPath(PlugInFilesModel(platform_).companyAppSupportPath(),
                                      formatted("%@.guid", {"entityresolver"}));
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

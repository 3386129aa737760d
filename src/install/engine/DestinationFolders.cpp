#include "install/engine/DestinationFolders.h"

#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"

namespace installer {

namespace {

constexpr std::uint32_t folderPermissions = 0775;

}  // namespace

DestinationFolders::DestinationFolders(Platform& platform, InstallRun& run,
                                       PrivilegedCommands& commands)
    : files_(platform.files), run_(run), commands_(commands) {}

void DestinationFolders::ensureDirExists(const std::string& path) {
    const std::string folder = withSingleSeparators(path);
    if (isThere(folder)) return;
    const std::string parent = parentPath(folder);
    if (!isThere(parent) && makeFolder(parent) == PrivilegedCommands::Outcome::refused) {
        return;
    }
    // The last thing to do, so it does not matter here whether it was refused.
    static_cast<void>(makeFolder(folder));
}

/// Looks twice, in two ways: a disk may fail to answer, and a folder that is taken for missing is
/// given to the user with all that it holds. So what the user may not look at counts as there.
bool DestinationFolders::isThere(const std::string& path) const {
    if (files_.exists(path)) return true;
    const auto names = files_.list(path);
    return names || names.error() == std::errc::permission_denied;
}

PrivilegedCommands::Outcome DestinationFolders::makeFolder(const std::string& path) {
    if (commands_.confirmItems() == PrivilegedCommands::Outcome::refused) {
        return PrivilegedCommands::Outcome::refused;
    }
    if (!files_.createFolders(path, folderPermissions)) {
        setAttributesRecursive(path, {.owner = run_.loginName,
                                      .group = InstallRun::group,
                                      .permissions = folderPermissions});
        return PrivilegedCommands::Outcome::finished;
    }
    const auto outcome = commands_.makeFolders(path);
    if (outcome == PrivilegedCommands::Outcome::finished) commands_.giveFolderToUser(path);
    return outcome;
}

void DestinationFolders::setAttributesRecursive(const std::string& path,
                                                const FileAttributeChanges& attributes) {
    // Read before the change: the new permissions may forbid it afterwards.
    const auto before = files_.attributes(path);
    static_cast<void>(files_.setAttributes(path, attributes));
    if (!before || before.value().type != FileType::folder) return;
    const auto names = files_.list(path);
    if (!names) return;
    for (const std::string& name : names.value()) {
        setAttributesRecursive(joinPath(path, name), attributes);
    }
}

}  // namespace installer

#include "install/DestinationFolders.h"

#include "foundation/Paths.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"

namespace installer {

namespace {

constexpr std::uint32_t folderPermissions = 0775;

}  // namespace

DestinationFolders::DestinationFolders(Platform& platform, InstallRun& run,
                                       PrivilegedCommands& commands)
    : files_(platform.files), run_(run), commands_(commands) {}

void DestinationFolders::ensureDirExists(const std::string& path) {
    const std::string folder = withSingleSeparators(path);
    if (files_.exists(folder)) return;
    const std::string parent = parentPath(folder);
    if (!files_.exists(parent) && makeFolder(parent) == PrivilegedCommands::Outcome::refused) {
        return;
    }
    // The last thing to do, so it does not matter here whether it was refused.
    static_cast<void>(makeFolder(folder));
}

PrivilegedCommands::Outcome DestinationFolders::makeFolder(const std::string& path) {
    if (!files_.createFolders(path, folderPermissions)) {
        if (isNew(path)) {
            setAttributesRecursive(path, {.owner = run_.loginName,
                                          .group = InstallRun::group,
                                          .permissions = folderPermissions});
        }
        return PrivilegedCommands::Outcome::finished;
    }
    const auto outcome = commands_.makeFolders(path);
    if (outcome == PrivilegedCommands::Outcome::finished) commands_.giveFolderToUser(path);
    return outcome;
}

/// A folder that was not seen, or that somebody else has made meanwhile, counts as made too. What
/// such a one holds belongs to others.
bool DestinationFolders::isNew(const std::string& folder) const {
    const auto names = files_.list(folder);
    return names && names.value().empty();
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

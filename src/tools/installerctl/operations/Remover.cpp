#include "tools/installerctl/operations/Remover.h"

#include <filesystem>

#include <fcntl.h>

#include "foundation/values/Paths.h"
#include "linux/desktop/DesktopEntry.h"
#include "privileged/files/RegularFile.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer {

namespace {

bool isForbidden(const RemovalOutcome& outcome) {
    return outcome.removal == Removal::failed &&
           (outcome.error == std::errc::permission_denied ||
            outcome.error == std::errc::operation_not_permitted);
}

}  // namespace

void addPlace(const std::string& path, WriteGrant& grant) {
    grant.addFolder(parentPath(path));
    grant.addDestination(path);
}

RemovalOutcome Remover::remove(const std::string& path, const EntryMap::Alternatives& records) {
    return byAdministrator(path, removeRecorded(path, records, links_));
}

RemovalOutcome Remover::removeFolder(const std::string& path) {
    return byAdministrator(path, removeEmptyFolder(path, links_));
}

RemovalOutcome Remover::removeFile(const std::string& path) {
    const auto present = recordEntry(path, links_);
    if (!present) return {Removal::missing, {}};
    if (present.value().kind == EntryKind::folder) return {Removal::changed, {}};
    return remove(path, {present.value()});
}

RemovalOutcome Remover::removeMenuEntry(const std::string& path) {
    constexpr std::size_t longestEntry = 65536;
    const auto location = locate(path, links_);
    if (!location) return {Removal::missing, {}};
    const auto file = openRegularFile(location.value().parent.get(), location.value().name,
                                      O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (!file) return {Removal::missing, {}};
    const auto text = readBeginning(
        "/proc/self/fd/" + std::to_string(file.value().descriptor.get()), longestEntry);
    if (!text || !isOwnDesktopEntry(text.value())) return {Removal::changed, {}};
    return removeFile(path);
}

/// The administrator's command removes whole trees, so a folder is looked at once more.
RemovalOutcome Remover::byAdministrator(const std::string& path, RemovalOutcome outcome) {
    if (!isForbidden(outcome) || rights_ == nullptr || isRefused_) return outcome;
    std::error_code error;
    const auto status = std::filesystem::symlink_status(path, error);
    if (std::filesystem::is_directory(status) && !std::filesystem::is_empty(path, error)) {
        return {Removal::notEmpty, {}};
    }
    const PrivilegedLaunch launch = rights_->execute("/bin/rm", {"-fR", path});
    if (launch.status != 0 || !launch.tool) {
        isRefused_ = true;
        return outcome;
    }
    launch.tool->waitUntilEnded();
    if (!launch.tool->hasSucceeded()) return outcome;
    return {Removal::removed, {}};
}

}  // namespace installer

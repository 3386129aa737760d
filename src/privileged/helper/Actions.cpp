#include "privileged/helper/Actions.h"

#include <sys/types.h>

#include "privileged/files/FolderCreation.h"
#include "privileged/helper/DesktopDatabase.h"
#include "privileged/system/AdminGroup.h"
#include "privileged/trees/TreeAttributes.h"
#include "privileged/trees/TreeRemoval.h"

namespace installer {
namespace {

constexpr LinkPolicy links = LinkPolicy::trustedOnly;
constexpr const char* quarantineAttribute = "user.com.apple.quarantine";

/// Only the last folder gets the mode of the command; missing ones above it get the usual mode.
std::error_code makeFoldersLikeTheTool(const Command& command) {
    constexpr mode_t modeAbove = 0755;
    const std::size_t separator = command.path.rfind('/');
    if (separator > 0) {
        const std::string parent = command.path.substr(0, separator);
        if (const std::error_code error = makeFolders(parent, modeAbove, links)) return error;
    }
    return makeFolders(command.path, command.mode, links);
}

std::error_code setOwnerToUser(const Command& command, const InvokingUser& user) {
    static const gid_t group = administratorsGroup();
    return setOwnerOfTree(command.path, user.number(), group, links);
}

std::error_code removeIfThere(const Command& command) {
    const std::error_code error = removeTree(command.path, links);
    const bool nothingThere =
        error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
    return nothingThere ? std::error_code() : error;
}

/// No secret that the user may not read is copied out. The copy belongs to root until later
/// commands set its owner and mode.
std::error_code copyAsTheUserReads(const Command& command, const InvokingUser& user,
                                   const CopyProgress& progress) {
    CopyTask task{.progress = progress, .privileges = Privileges::drop, .reader = user.reader()};
    return copyTree(command.source, command.path, links, task);
}

}  // namespace

std::error_code perform(const Command& command, const InvokingUser& user,
                        const CopyProgress& progress) {
    switch (command.action) {
        case Action::makeFolders:
            return makeFoldersLikeTheTool(command);
        case Action::setOwner:
            return setOwnerToUser(command, user);
        case Action::remove:
            return removeIfThere(command);
        case Action::copy:
            return copyAsTheUserReads(command, user, progress);
        case Action::setMode:
            return setModeOfTree(command.path, command.mode, links);
        case Action::touch:
            return touchFile(command.path, links);
        case Action::removeQuarantine:
            return removeAttributeOfTree(command.path, quarantineAttribute, links);
        case Action::refreshDesktopDatabase:
            return startDesktopDatabaseRefresh();
    }
    return std::make_error_code(std::errc::function_not_supported);
}

}  // namespace installer

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "privileged/protocol/Message.h"
#include "privileged/wall/InvokingUser.h"
#include "privileged/wall/ProtectedFolders.h"

namespace installer {

/// What the helper can do. Each action takes what `Command` holds and nothing else.
enum class Action {
    makeFolders,
    setOwner,
    remove,
    copy,
    setMode,
    touch,
    removeQuarantine,
    refreshDesktopDatabase,
};

/// A request that the policy allows.
struct Command {
    Action action = Action::touch;
    std::string source;  ///< of a copy
    std::string path;    ///< what is acted upon
    mode_t mode = 0;     ///< of new folders, or the mode to set
};

/// The request as a command, when its tool and every argument are as the policy's table has them
/// and each path is one that `isPlainPath`, and what is acted upon lies in no protected folder.
/// nullopt otherwise.
[[nodiscard]] std::optional<Command> allowedCommand(const ToolRequestView& request,
                                                    InvokingUser& user,
                                                    const ProtectedFolders& folders);

/// Absolute, not the root itself, within PATH_MAX, without a NUL and without the components "",
/// "." and "..": so it names one place, and no tool would read it as an option.
[[nodiscard]] bool isPlainPath(std::string_view text);

}  // namespace installer

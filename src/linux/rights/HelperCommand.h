#pragma once

#include <optional>
#include <string>

#include "privileged/system/Spawn.h"

namespace installer {

/// What decides how the helper can be started as root.
struct AdministratorMeans {
    bool isRoot = false;
    std::string pkexec;         ///< the program's path; empty if it is not installed
    bool hasSystemBus = false;  ///< pkexec reaches polkit over it
    std::string textAgent;      ///< polkit's agent for terminals; empty if not installed
    bool hasSessions = false;   ///< the machine tracks login sessions, with dialogs of their own
    std::string sudo;           ///< the program's path; empty if it is not installed
    bool hasTerminal = false;   ///< a question on this process's terminal can be answered
    bool hasAskpass = false;    ///< SUDO_ASKPASS names a program that asks in a window

    /// What the running process finds.
    [[nodiscard]] static AdministratorMeans current();
};

enum class AdministratorWay {
    none,
    alreadyRoot,  ///< no helper is started
    polkit,
    sudoOnTerminal,
    sudoWithAskpass,
    sudoWithoutAsking,  ///< succeeds only if the sudoers rules need no password
};

/// The first way that can work. sudo is used only if polkit cannot be reached.
[[nodiscard]] AdministratorWay administratorWay(const AdministratorMeans& means);

/// Whether that way may ask for a password.
[[nodiscard]] bool mayAsk(AdministratorWay way);

/// The exit status of that way's command if the user dismisses the password prompt. nullopt for
/// sudo, which reports every refusal in the same way.
[[nodiscard]] std::optional<int> dismissedExitStatus(AdministratorWay way);

/// The text agent that must run while the helper is started, so that polkit can ask on this
/// process's terminal. nullopt if that way does not use polkit, or there is no terminal or agent.
/// The caller supplies its standard output: the agent closes it once it is registered with polkit.
/// If the desktop has a dialog of its own, polkit uses that.
[[nodiscard]] std::optional<SpawnRequest> terminalAgentCommand(AdministratorWay way,
                                                               const AdministratorMeans& means);

/// What the helper is told of the installation.
struct HelperPlace {
    std::string path;    ///< the helper's own
    std::string volume;  ///< the target volume's real path; empty for the running system
    std::string home;    ///< the user's home folder on the running system; empty if there is none
};

/// The command that starts the helper that way. The caller supplies its standard input and output.
/// No way waits for an answer if there is no means to answer. `reason` is one line for the user:
/// which product asks, and why.
[[nodiscard]] SpawnRequest helperCommand(AdministratorWay way, const AdministratorMeans& means,
                                         const HelperPlace& helper, const std::string& reason);

}  // namespace installer

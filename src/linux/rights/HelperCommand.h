#pragma once

#include <optional>
#include <string>

#include "privileged/system/Spawn.h"

namespace installer {

/// What decides how the helper can be started as root.
struct AdministratorMeans {
    bool isRoot = false;
    std::string pkexec;         ///< the program's path; empty when it is not there
    bool hasSystemBus = false;  ///< without it pkexec has nobody to ask
    std::string textAgent;      ///< polkit's program that asks on a terminal; may be empty
    bool hasSessions = false;   ///< the machine knows login sessions, each with its own dialogues
    std::string sudo;           ///< the program's path; empty when it is not there
    bool hasTerminal = false;   ///< somebody can answer a question on this process's terminal
    bool hasAskpass = false;    ///< sudo was told of a program that asks in a window

    /// Those of the running process.
    [[nodiscard]] static AdministratorMeans current();
};

enum class AdministratorWay {
    none,
    alreadyRoot,
    polkit,
    sudoOnTerminal,
    sudoWithAskpass,
    sudoWithoutAsking,  ///< where nobody could answer; succeeds only if the rules ask nothing
};

/// The first way that can work. sudo is taken only where there is no polkit to ask.
[[nodiscard]] AdministratorWay administratorWay(const AdministratorMeans& means);

/// Whether somebody may be asked for a password that way.
[[nodiscard]] bool mayAsk(AdministratorWay way);

/// The exit status by which the command of that way says that its question was dismissed. sudo has
/// none: a refusal of any kind is the same to it.
[[nodiscard]] std::optional<int> dismissedExitStatus(AdministratorWay way);

/// What must run while the helper is started that way so that polkit can ask on this process's
/// terminal, its standard output aside, which it closes as soon as polkit knows of it; none where
/// that is not needed or not possible. A desktop's dialogue comes first where there is one.
[[nodiscard]] std::optional<SpawnRequest> terminalAgentCommand(AdministratorWay way,
                                                               const AdministratorMeans& means);

/// How the helper is started that way, its streams aside. No way waits for an answer that nobody
/// can give. `reason` is one line that tells the person asked who asks and why.
[[nodiscard]] SpawnRequest helperCommand(AdministratorWay way, const AdministratorMeans& means,
                                         const std::string& helperPath, const std::string& reason);

}  // namespace installer

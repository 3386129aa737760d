#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "foundation/values/Result.h"

namespace installer {

/// How a program is started: in place of a fork, whose cost grows with the size of this process.
struct SpawnRequest {
    static constexpr int devNull = -1;  ///< for a stream: /dev/null
    static constexpr int own = -2;      ///< for a stream: this process's own
    enum class Environment { inherited, empty };
    enum class Session { inherited, itsOwn };

    std::string path;                    ///< absolute; also the program's own name for itself
    std::vector<std::string> arguments;  ///< without that name
    int standardInput = devNull;
    int standardOutput = devNull;
    int standardError = devNull;
    Environment environment = Environment::inherited;
    Session session = Session::inherited;
};

/// Starts the program with every signal at its default and no descriptor beyond the standard
/// three. Gives the process id; the caller must wait for it. Errors: those of execve,
/// and EINVAL for a path or an argument that holds a NUL.
[[nodiscard]] Result<pid_t> spawn(const SpawnRequest& request);

/// Waits for the end of that process alone and gives its wait status; an error when it was waited
/// for elsewhere. Calls `whileWaiting`, when one is given, several times a second until then.
[[nodiscard]] Result<int> waitForEnd(pid_t process, const std::function<void()>& whileWaiting = {});

}  // namespace installer

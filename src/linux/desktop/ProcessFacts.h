#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace installer {

/// What the kernel's status line says of a process.
struct ProcessStatus {
    std::string shortName;
    bool hasEnded = false;  ///< a zombie: its parent has not waited for it
    bool isKernelThread = false;
};

/// Reads the contents of `/proc/PID/stat`; nullopt if it is no such line. The name in it may
/// hold anything, brackets and blanks included.
[[nodiscard]] std::optional<ProcessStatus> parsedProcessStatus(std::string_view line);

/// What can be learned of a running process without rights over it.
struct ProcessFacts {
    /// The name of the file that was started, its first 15 bytes; the process may have changed it.
    std::string shortName;
    /// What it was started with, its own name for itself first. Only the first ones are here.
    std::vector<std::string> arguments;
    /// The path of the program's file; empty when it is another user's process.
    std::string executable;
    /// The user who started it; nullopt if the kernel does not say.
    std::optional<uid_t> user = {};
};

/// nullopt for a process that is gone or has ended, and for a kernel thread.
[[nodiscard]] std::optional<ProcessFacts> processFacts(pid_t process);

/// The processes that the kernel lists, in its order.
[[nodiscard]] std::vector<pid_t> listedProcesses();

}  // namespace installer

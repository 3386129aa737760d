#pragma once

#include <optional>
#include <string>
#include <vector>

namespace installer {

/// A few lines for the shell, which call the system's own packing programs. Values never stand in
/// the text: they are arguments ($1, $2, ...), so that no name can be read as a command.
struct ToolScript {
    std::string what;  ///< is told to somebody at a terminal if it takes long: "Packing X.run"
    std::string text;
    std::vector<std::string> arguments;
    std::vector<std::string> needed;  ///< names of the programs that it calls
};

/// Runs the script, which ends at its first command that fails. The programs' messages go to
/// standard error, and what they print with them. nullopt on success, else a sentence for the
/// maker: which program is missing, or that the script failed.
[[nodiscard]] std::optional<std::string> runScript(const ToolScript& script);

/// What a script left in a file for its caller; empty if there is nothing.
[[nodiscard]] std::string firstLineOf(const std::string& path);

/// Whether a program of that name is in PATH.
[[nodiscard]] bool hasProgram(const std::string& name);

}  // namespace installer

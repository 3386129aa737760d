#pragma once

#include <optional>
#include <span>

namespace installer {

/// Which program started the helper as root. It decides who says for whom the helper acts.
enum class StartedBy {
    root,    ///< the installer itself, which is root already
    polkit,  ///< pkexec
    sudo,
};

/// What the installer says on the helper's command line.
struct HelperArguments {
    StartedBy startedBy = StartedBy::root;
};

/// Reads the words after the program's name: nothing, or "--started-by" and "polkit" or "sudo".
/// nullopt for anything else.
[[nodiscard]] std::optional<HelperArguments> helperArguments(std::span<const char* const> words);

}  // namespace installer

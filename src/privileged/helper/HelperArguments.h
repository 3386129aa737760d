#pragma once

#include <optional>
#include <span>
#include <string>

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
    std::string volume;  ///< the target volume's real path; empty for the running system
    std::string home;    ///< the user's home folder on the running system; may be empty
};

/// Reads the words after the program's name: any of "--started-by polkit", "--started-by sudo",
/// "--volume PATH" and "--home PATH". nullopt for anything else. A
/// path that is not one that `isPlainPath` is passed over.
[[nodiscard]] std::optional<HelperArguments> helperArguments(std::span<const char* const> words);

}  // namespace installer

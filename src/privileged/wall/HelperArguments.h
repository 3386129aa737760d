#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

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
    std::vector<std::string> folders;  ///< that the run writes below; it changes nothing else
};

/// Reads the words after the program's name: any of "--started-by polkit", "--started-by sudo",
/// "--volume PATH", "--home PATH" and any number of "--into PATH". nullopt for anything else. A
/// path that is not one that `isPlainPath` is passed over; only "--into" may name the root.
[[nodiscard]] std::optional<HelperArguments> helperArguments(std::span<const char* const> words);

}  // namespace installer

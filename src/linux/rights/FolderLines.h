#pragma once

#include <string>
#include <vector>

namespace installer {

/// The words around the folders that the person who is asked is shown.
struct FolderWords {
    std::string heading = "It changes files below these folders only:";
    std::string more = "(and %@ more)";  ///< with the number of those that are not shown
};

/// The folders as lines for a terminal or a log: the heading, then a folder in each line. Only the
/// first of many are shown, and a long path loses its middle. No character is one that a terminal
/// obeys. No lines if there is no folder.
[[nodiscard]] std::vector<std::string> folderLines(const std::vector<std::string>& folders,
                                                   const FolderWords& words);

}  // namespace installer

#pragma once

#include <optional>
#include <string>

#include "tools/mkinstaller/packing/PackSource.h"

namespace installer {

/// Where a distribution's package puts everything. Paths are those of the machine it is installed
/// on.
struct PackagePlaces {
    explicit PackagePlaces(const PackSource& source);

    std::string name;        ///< of the package and of the command
    std::string actionName;  ///< polkit's
    std::string company;     ///< /usr/lib/COMPANY
    std::string folder;      ///< /usr/lib/COMPANY/PRODUCT
    std::string contents;    ///< of the bundle in it
    std::string command;     ///< in /usr/bin
    std::string entry;       ///< the desktop entry
    std::string icon;
    std::string action;  ///< polkit's description of the question
    std::string manual;  ///< before it is compressed
    std::string notes;   ///< the folder of copyright and changes

    [[nodiscard]] std::string programs() const { return contents + "/MacOS"; }
};

/// Fills the folder with everything that a package holds, as below the root of a machine.
/// A sentence for the maker on failure.
[[nodiscard]] std::optional<std::string> makePackageTree(const PackSource& source,
                                                         const PackagePlaces& places,
                                                         const std::string& root);

}  // namespace installer

#pragma once

#include <optional>
#include <string>

#include "tools/mkinstaller/packing/BundleArchive.h"
#include "tools/mkinstaller/packing/PackSource.h"

namespace installer {

/// What came of packing: the name of the file in the output folder, or a sentence for the maker.
struct Packed {
    std::string file;
    std::optional<std::string> failure;
};

// Each makes one file in the folder, which replaces one of that name once it is whole. The same
// source gives the same bytes.

/// One file that unpacks and starts the installer: a head for the shell, then the compressed
/// bundle. It needs the program of that compression where it is started.
[[nodiscard]] Packed packRunFile(const PackSource& source, const Kit& kit, Compression compression,
                                 const std::string& folder);
/// The bundle, compressed, with modes.
[[nodiscard]] Packed packTarFile(const PackSource& source, const std::string& folder);
/// Packages of distributions, which put the bundle below /usr/lib and install nothing into hosts.
[[nodiscard]] Packed packDebPackage(const PackSource& source, const std::string& folder);
[[nodiscard]] Packed packRpmPackage(const PackSource& source, const std::string& folder);

}  // namespace installer

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/values/Result.h"

namespace installer {

/// The hash of each file below a bundle's Contents, and of each link's target, by its path there.
/// Folders are not listed, and neither is the seal itself.
using BundleManifest = std::map<std::string, std::string>;

/// Reads every file. Follows no link. The system's error if something cannot be read.
[[nodiscard]] Result<BundleManifest> manifestOf(const std::string& contents);

/// A line for each entry: its hash, two blanks, its path.
[[nodiscard]] std::string textOf(const BundleManifest& manifest);
/// nullopt if a line is of another form.
[[nodiscard]] std::optional<BundleManifest> parsedManifest(std::string_view text);

/// The seal: the list, its signature and the key of its maker, in a bundle's Contents.
inline constexpr const char* manifestFile = "manifest";
inline constexpr const char* manifestSignatureFile = "manifest.minisig";
inline constexpr const char* makersKeyFile = "maker.pub";

}  // namespace installer

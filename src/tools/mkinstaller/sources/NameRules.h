#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace installer {

// What a company's or a product's name must be so that folders and files can be called by it.

inline constexpr std::size_t longestFileName = 255;  // bytes
inline constexpr std::string_view logSuffix = " Installer.log";
inline constexpr std::string_view bundleSuffix = " Installer.app";

/// "COMPANY PRODUCT Installer.app".
[[nodiscard]] std::string bundleName(std::string_view company, std::string_view product);

/// How many bytes the product's name may have: the longest file name made of it must fit.
[[nodiscard]] std::size_t longestProductName(std::string_view company);

/// Line ends, tabs and the like, also those beyond ASCII.
[[nodiscard]] bool hasControlCharacters(std::string_view text);

/// Whether the text is a name of one folder: not empty, no slash, no control characters, not "."
/// or "..", no blank or dot at its beginning, no blank at its end.
[[nodiscard]] bool isFolderName(std::string_view name);

}  // namespace installer

#pragma once

#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace installer {

struct NewProductNames;

/// Writes the file, and the folders above it where they are missing.
[[nodiscard]] std::error_code writeFile(const std::string& path, std::string_view contents);

/// A property list of texts.
[[nodiscard]] std::string starterPropertyList(
    const std::vector<std::pair<std::string, std::string>>& values);

/// Writes what a new product installs, an item for each place where an item can go to, the folders
/// of SharedSupport, and a README that says what each folder is for.
[[nodiscard]] std::error_code writeStarterPayload(const std::string& folder,
                                                  const NewProductNames& names);

/// The text with what means something to XML written as it must be.
[[nodiscard]] std::string escapedForXml(std::string_view text);

}  // namespace installer

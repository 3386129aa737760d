#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

// Small questions about files, for a program that reads a maker's folder and never changes it.
// Nothing here throws; what cannot be read counts as not being there.

/// Files that are longer are not texts, pages or layouts that the installer would read.
inline constexpr std::size_t largestSource = std::size_t{16} << 20U;

/// The names in the folder, hidden ones included, sorted; none when it cannot be listed.
[[nodiscard]] std::vector<std::string> sortedNames(const std::string& folder);

/// What lies at the path itself, without following a link at its end.
enum class EntryType { missing, file, folder, link, other };
[[nodiscard]] EntryType entryType(const std::string& path);

/// Follows links.
[[nodiscard]] bool isFolder(const std::string& path);
[[nodiscard]] bool isFile(const std::string& path);

/// The contents of a regular file of at most `limit` bytes; none when there is no such file.
[[nodiscard]] std::optional<std::string> contentsOf(const std::string& path,
                                                    std::size_t limit = largestSource);

/// At most `size` bytes from the file's beginning, however long it is; none when it cannot be read.
[[nodiscard]] std::optional<std::string> startOf(const std::string& path, std::size_t size);

/// The part of the name behind its last dot, "" without one.
[[nodiscard]] std::string suffixOf(std::string_view name);
/// The name without that part and the dot.
[[nodiscard]] std::string stemOf(std::string_view name);

/// The line in which the byte lies; the first line is 1.
[[nodiscard]] std::size_t lineOf(std::string_view text, std::size_t offset);

}  // namespace installer

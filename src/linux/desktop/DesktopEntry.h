#pragma once

#include <optional>
#include <string>

namespace installer {

/// What the desktop is told about an application.
struct DesktopEntry {
    std::string name;        ///< as people read it
    std::string executable;  ///< its absolute path
    std::string icon;        ///< an image's absolute path; empty when there is none
};

/// The entry's file. nullopt if a path holds what the file cannot express: control characters or
/// bytes that are not UTF-8.
[[nodiscard]] std::optional<std::string> desktopEntryText(const DesktopEntry& entry);

/// The name of the file for an application of that identifier (or name, where it has none): always
/// a plain file name, the same for the same identifier and another for another one.
[[nodiscard]] std::string desktopEntryFileName(const std::string& identifier);

}  // namespace installer

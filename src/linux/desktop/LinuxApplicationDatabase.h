#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "linux/files/LinuxSearchPaths.h"
#include "linux/files/UserFiles.h"
#include "ports/ApplicationDatabase.h"

namespace installer {

class Bundle;
class Bundles;
class SystemLog;

/// Registers applications as desktop entries in the user's applications folder, one file each, so
/// that the desktop's menus show them. Registering one again replaces its entry.
class LinuxApplicationDatabase final : public ApplicationDatabase {
  public:
    /// Where the user has no applications folder, nothing is registered, with success. On a target
    /// volume the entries lie in the user's folder there, with the paths that its own system sees.
    LinuxApplicationDatabase(const LinuxSearchPaths& searchPaths, Bundles& bundles, SystemLog& log);

    /// An application is a bundle that calls itself one ("APPL"), or whose name ends in ".app" when
    /// it does not say, with a program (`namedProgram`) that this system could start. The
    /// status is the errno of writing the entry, whose text is logged; EINVAL when the path cannot
    /// be written into one.
    [[nodiscard]] std::int32_t registerApplication(const std::string& path) override;

    /// The path of the entry that registering the application makes; nullopt if it makes none.
    [[nodiscard]] std::optional<std::string> entryOf(const std::string& path) const;

  private:
    /// What registering an application comes to.
    struct Registration {
        std::string path;                 ///< of the entry
        std::optional<std::string> text;  ///< nullopt if it cannot be written
    };
    [[nodiscard]] std::optional<Registration> registrationOf(const std::string& path) const;
    [[nodiscard]] std::error_code write(const Registration& registration) const;

    LinuxSearchPaths searchPaths_;
    std::optional<std::string> folder_;
    UserFiles files_;
    Bundles& bundles_;
    SystemLog& log_;
};

}  // namespace installer

#pragma once

#include <optional>
#include <string>

#include "platform/ApplicationDatabase.h"
#include "platform/linux/UserFiles.h"

namespace installer {

class Bundle;
class Bundles;

/// Registers applications as desktop entries in the user's applications folder, one file each, so
/// that the desktop's menus show them. Registering one again replaces its entry.
class LinuxApplicationDatabase final : public ApplicationDatabase {
  public:
    /// Without a folder nothing is registered, with success: the user's desktop has none, or the
    /// applications belong to another disk's system.
    LinuxApplicationDatabase(std::optional<std::string> applicationsFolder, UserFiles files,
                             Bundles& bundles);

    /// An application is a bundle that calls itself one ("APPL"), or whose name ends in ".app" when
    /// it does not say, with an executable in `Contents/MacOS` that this system could start. The
    /// status is the errno of writing the entry; EINVAL when the path cannot be written into one.
    [[nodiscard]] std::int32_t registerApplication(const std::string& path) override;

  private:
    std::optional<std::string> folder_;
    UserFiles files_;
    Bundles& bundles_;
};

}  // namespace installer

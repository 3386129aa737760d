#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/values/Result.h"
#include "linux/process/Environment.h"
#include "ports/SearchPaths.h"

namespace installer {

struct UserAccount;

/// Names the folder where the target volume is mounted.
inline constexpr const char* targetVolumeVariable = "INSTALLER_TARGET_VOLUME";

/// The folders of the machine and the user. Without a target volume they are those of the running
/// system; with one, every fixed path lies below its folder, the user's own in `Users/LOGIN`.
class LinuxSearchPaths final : public SearchPaths {
  public:
    struct Values {
        std::optional<std::string> home;      ///< absolute; of the running system
        std::vector<std::string> ownHomes;    ///< what lies below them is never protected
        std::optional<std::string> dataHome;  ///< absolute; where it is not `~/.local/share`
        std::string loginName;
        std::string homeName = {};  ///< whose home it is, where that is not `loginName`
        std::optional<std::string> targetVolume;  ///< absolute
        std::vector<std::string> languages;
    };

    explicit LinuxSearchPaths(Values values);

    /// Reads HOME, XDG_DATA_HOME, the languages and the target volume from the environment. The
    /// login name is that of the effective user whatever the environment says, or its number where
    /// the system has no name for it; a HOME that is no absolute path is replaced by what the
    /// system knows. A relative target volume is one below the working directory of now, an empty
    /// one counts as none. An error when the volume is missing or no folder.
    [[nodiscard]] static Result<LinuxSearchPaths> fromEnvironment(const Environment& environment);

    /// The same for an effective user who acts for the owner of another home: the folders are that
    /// user's, the login name is not.
    [[nodiscard]] static Result<LinuxSearchPaths> forHomeOf(const UserAccount& user,
                                                            const Environment& environment);

    [[nodiscard]] std::string localApplicationSupportFolder() const override;
    [[nodiscard]] std::string localApplicationsFolder() const override;
    [[nodiscard]] std::optional<std::string> userApplicationSupportFolder() const override;
    [[nodiscard]] std::optional<std::string> userPreferencesFolder() const override;
    [[nodiscard]] std::optional<std::string> homeFolder() const override;
    [[nodiscard]] std::string loginName() const override;
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override;
    [[nodiscard]] std::string onTargetVolume(const std::string& path) const override;
    [[nodiscard]] std::string asSeenOnTargetVolume(const std::string& path) const override;
    [[nodiscard]] bool isProtected(const std::string& path) const override;

    /// The target volume's path, and the user's home folder on the running system; empty if there
    /// is none.
    [[nodiscard]] std::string targetVolume() const { return values_.targetVolume.value_or(""); }
    [[nodiscard]] std::string homeOnRunningSystem() const { return values_.home.value_or(""); }

    /// Where the user's desktop looks for applications; nullopt if there is no such folder.
    [[nodiscard]] std::optional<std::string> userApplicationsFolder() const;

  private:
    [[nodiscard]] const std::string& homeName() const {
        return values_.homeName.empty() ? values_.loginName : values_.homeName;
    }
    [[nodiscard]] std::optional<std::string> belowHome(const std::string& path) const;

    Values values_;
};

}  // namespace installer

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace installer {

/// Where the machine, the user and the target volume keep things. The target volume is the disk
/// that is installed onto: the running system's, unless another one was named at the start. Every
/// folder given here already lies on it; only this interface knows where it is mounted.
class SearchPaths {
  public:
    virtual ~SearchPaths() = default;

    /// The machine-wide folders `/Library/Application Support` and `/Applications`.
    [[nodiscard]] virtual std::string localApplicationSupportFolder() const = 0;
    [[nodiscard]] virtual std::string localApplicationsFolder() const = 0;

    /// The user's `~/Library/Application Support` and `~/Library/Preferences`, whether they exist
    /// or not; nullopt if the user has no home folder.
    [[nodiscard]] virtual std::optional<std::string> userApplicationSupportFolder() const = 0;
    [[nodiscard]] virtual std::optional<std::string> userPreferencesFolder() const = 0;

    /// The folder that the two above are in: the user's home.
    [[nodiscard]] virtual std::optional<std::string> homeFolder() const = 0;

    /// The login name of the effective user.
    [[nodiscard]] virtual std::string loginName() const = 0;

    /// The user's preferred languages, the first one first.
    [[nodiscard]] virtual std::vector<std::string> preferredLanguages() const = 0;

    /// The real path of an absolute path that is meant on the target volume. A ".." cannot lead
    /// out of the volume. The empty path stays empty.
    [[nodiscard]] virtual std::string onTargetVolume(const std::string& path) const = 0;

    /// The opposite: the path under which the target volume's own system will know the real
    /// path. A path elsewhere stays as it is.
    [[nodiscard]] virtual std::string asSeenOnTargetVolume(const std::string& path) const = 0;

    /// Whether an entry at the real path would be, or lie in, a folder of the system or somebody
    /// else's home, as the target volume's own system sees it (`isInSystemFolder`). Such a path is
    /// no destination, whoever names it.
    [[nodiscard]] virtual bool isProtected(const std::string& path) const = 0;
};

}  // namespace installer

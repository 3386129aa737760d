#include "linux/files/LinuxSearchPaths.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/SystemFolders.h"
#include "linux/process/PreferredLanguages.h"
#include "privileged/system/Accounts.h"

namespace installer {

namespace {

/// The account of the effective user; its number is its name if the system has no entry for it.
UserAccount effectiveAccount() {
    const uid_t user = ::geteuid();
    const auto account = userNumbered(user);
    return account ? account.value() : UserAccount{user, std::to_string(user), ""};
}

std::optional<std::string> absolutePath(const std::optional<std::string>& path) {
    if (!path || !path->starts_with('/')) return std::nullopt;
    return withSingleSeparators(*path);
}

/// The folder of the target volume as an absolute path; the empty text when none is named.
Result<std::string> targetVolumeFrom(const Environment& environment) {
    std::string volume = environment(targetVolumeVariable).value_or("");
    if (volume.empty()) return volume;
    std::error_code error;
    volume = std::filesystem::absolute(volume, error).lexically_normal().string();
    if (error) return error;
    const auto status = std::filesystem::status(volume, error);
    if (!std::filesystem::exists(status))
        return error ? error : std::make_error_code(std::errc::no_such_file_or_directory);
    if (!std::filesystem::is_directory(status))
        return std::make_error_code(std::errc::not_a_directory);
    return withSingleSeparators(volume);
}

/// The path's components without "." and "..", which cannot lead above the first one.
std::string withoutParentComponents(const std::string& path) {
    std::vector<std::string> kept;
    for (auto& component : split(path, '/')) {
        if (component.empty() || component == ".") continue;
        if (component != "..")
            kept.push_back(std::move(component));
        else if (!kept.empty())
            kept.pop_back();
    }
    std::string joined;
    for (const auto& component : kept) joined = joinPath(joined, component);
    return joined;
}

}  // namespace

LinuxSearchPaths::LinuxSearchPaths(Values values) : values_(std::move(values)) {}

Result<LinuxSearchPaths> LinuxSearchPaths::fromEnvironment(const Environment& environment) {
    auto volume = targetVolumeFrom(environment);
    if (!volume) return volume.error();
    const UserAccount account = effectiveAccount();
    Values values;
    values.home = absolutePath(environment("HOME"));
    if (!values.home) values.home = absolutePath(account.home);
    for (const auto& home : {values.home, absolutePath(account.home)}) {
        if (home && isOwnHome(*home, account)) values.ownHomes.push_back(*home);
    }
    values.dataHome = absolutePath(environment("XDG_DATA_HOME"));
    values.loginName = account.name;
    if (!volume.value().empty()) values.targetVolume = std::move(volume.value());
    values.languages = installer::preferredLanguages(environment);
    return LinuxSearchPaths(std::move(values));
}

Result<LinuxSearchPaths> LinuxSearchPaths::forHomeOf(const UserAccount& user,
                                                     const Environment& environment) {
    const auto withThatHome = [&](const std::string& name) -> std::optional<std::string> {
        if (name == "XDG_DATA_HOME") return std::nullopt;
        return name == "HOME" ? user.home : environment(name);
    };
    auto paths = fromEnvironment(withThatHome);
    if (!paths) return paths.error();
    Values values = paths.value().values_;
    values.home = absolutePath(user.home);
    values.homeName = user.name;
    return LinuxSearchPaths(std::move(values));
}

std::string LinuxSearchPaths::localApplicationSupportFolder() const {
    return onTargetVolume("/Library/Application Support");
}

std::string LinuxSearchPaths::localApplicationsFolder() const {
    return onTargetVolume("/Applications");
}

std::optional<std::string> LinuxSearchPaths::userApplicationSupportFolder() const {
    return belowHome("Library/Application Support");
}

std::optional<std::string> LinuxSearchPaths::userPreferencesFolder() const {
    return belowHome("Library/Preferences");
}

std::string LinuxSearchPaths::loginName() const {
    return values_.loginName;
}

std::vector<std::string> LinuxSearchPaths::preferredLanguages() const {
    return values_.languages;
}

std::string LinuxSearchPaths::onTargetVolume(const std::string& path) const {
    if (!values_.targetVolume || path.empty()) return path;
    return joinPath(*values_.targetVolume, withoutParentComponents(path));
}

std::string LinuxSearchPaths::asSeenOnTargetVolume(const std::string& path) const {
    if (!values_.targetVolume || *values_.targetVolume == "/") return path;
    const std::string& volume = *values_.targetVolume;
    if (path == volume) return "/";
    if (!path.starts_with(volume + "/")) return path;
    return path.substr(volume.size());
}

bool LinuxSearchPaths::isProtected(const std::string& path) const {
    // Those on the running system too: a folder that the user picks may lie there.
    std::vector<std::string> homes = values_.ownHomes;
    if (values_.targetVolume) homes.push_back(joinPath("/Users", homeName()));
    return isInSystemFolder(asSeenOnTargetVolume(path), homes);
}

std::optional<std::string> LinuxSearchPaths::homeFolder() const {
    if (values_.targetVolume) return onTargetVolume(joinPath("/Users", homeName()));
    return values_.home;
}

std::optional<std::string> LinuxSearchPaths::userApplicationsFolder() const {
    const bool isOfRunningSystem = !values_.targetVolume;
    if (isOfRunningSystem && values_.dataHome) return joinPath(*values_.dataHome, "applications");
    return belowHome(".local/share/applications");
}

std::optional<std::string> LinuxSearchPaths::belowHome(const std::string& path) const {
    const auto home = homeFolder();
    if (!home) return std::nullopt;
    return joinPath(*home, path);
}

}  // namespace installer

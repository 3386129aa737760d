#include "hosts/PhotoshopHostModel.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "ports/Clock.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SearchPaths.h"
#include "ports/SystemLog.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

constexpr int openRetries = 3;
constexpr std::chrono::microseconds retryDelay{500'000};

// Only the two strings at the start of a paths file are used, and no system takes a path that is
// anywhere near this long. The limit keeps a huge file of that name from filling the memory.
constexpr std::size_t pathsFileLimit = std::size_t{64} << 10U;
constexpr std::size_t longestTooShortFile = 7;

constexpr std::uint32_t versionOfBareCC = 7;
constexpr std::uint32_t firstVersionWithFixedFolders = 2019;
constexpr const char* sharedPlugInFolder = "/Library/Application Support/Adobe/Plug-Ins/CC/";

// A negative number counts as well: it becomes a huge version.
std::uint32_t unsignedValue(std::string_view text) {
    return static_cast<std::uint32_t>(integerValue(text));
}

std::uint32_t firstNumber(std::string_view text) {
    return unsignedValue(split(trimmed(text), ' ').front());
}

/// The real path of a path that Photoshop knows. One that is not absolute names nothing; it stays
/// as it is, because behind a volume's own path it would name something.
std::string onTargetVolume(const Platform& platform, const std::string& path) {
    if (!path.starts_with('/')) return path;
    return withSingleSeparators(platform.searchPaths.onTargetVolume(path));
}

/// Empty if the folder is not known.
std::string pathBelow(const std::string& folder, std::string_view entry) {
    return folder.empty() ? std::string() : joinPath(folder, entry);
}

bool holdsApplication(FileManager& files, const std::string& folder) {
    const Result<std::vector<std::string>> names = files.list(folder);
    if (!names) return false;
    return std::any_of(names.value().begin(), names.value().end(),
                       [](const std::string& name) { return name.ends_with(".app"); });
}

/// The NUL-terminated string at that place. Its first byte belongs to it whatever it is, so an
/// empty string swallows the one behind it; the end of the file ends the last string.
std::string_view terminatedString(std::string_view bytes, std::size_t start) {
    if (start >= bytes.size()) return {};
    const std::size_t end = bytes.find('\0', start + 1);
    return bytes.substr(start, end == std::string_view::npos ? end : end - start);
}

/// Photoshop may be writing the file just now, so a file that cannot be opened gets more chances.
std::optional<std::string> readPathsFile(Platform& platform, const std::string& path) {
    Result<std::string> contents = platform.files.read(path, pathsFileLimit);
    for (int retry = 0; !contents && retry < openRetries; ++retry) {
        platform.log.log(
            formatted("Could not open paths file: %@", {path + ": " + contents.error().message()}));
        platform.clock.sleep(retryDelay);
        contents = platform.files.read(path, pathsFileLimit);
    }
    if (!contents) return std::nullopt;
    return std::move(contents).value();
}

}  // namespace

PhotoshopHostModel PhotoshopHostModel::initWithPathsFilePath(Platform& platform,
                                                             const std::string& path) {
    PhotoshopHostModel host(replacingAll(lastPathComponent(path), " Paths", ""));
    host.initPathsFromPathFile(platform, path);
    return host;
}

PhotoshopHostModel PhotoshopHostModel::initWithHostName(Platform& platform,
                                                        const std::string& hostName) {
    PhotoshopHostModel host(hostName);
    if (host.version() < firstVersionWithFixedFolders) {
        host.initPathsFromHostName(platform);
        return host;
    }
    host.appPath_ = onTargetVolume(platform, "/Applications/" + hostName);
    host.plugInPath_ = onTargetVolume(platform, sharedPlugInFolder);
    host.scriptsPath_ = joinPath(host.appPath_, "Presets/Scripts");
    host.panelsPath_ = joinPath(host.plugInPath_, "Panels");
    host.hostIsInstalled_ = holdsApplication(platform.files, host.appPath_);
    return host;
}

void PhotoshopHostModel::initPathsFromHostName(Platform& platform) {
    const std::string preferences = NSUserPreferencesDirectory(platform).value_or("");
    initPathsFromPathFile(platform, joinPath(preferences, hostName_ + " Paths"));
}

void PhotoshopHostModel::initPathsFromPathFile(Platform& platform, const std::string& path) {
    const std::optional<std::string> contents = readPathsFile(platform, path);
    if (!contents) return;
    if (contents->size() <= longestTooShortFile) {
        platform.log.log(formatted("Could not parse paths file: too short: %@", {path}));
        return;
    }
    const std::string_view first = terminatedString(*contents, 0);
    const std::string_view second = terminatedString(*contents, first.size() + 1);

    appPath_ = onTargetVolume(platform, decodedUtf8(first).value_or(""));
    const std::uint32_t release = version();
    if (release > 2015 || (release == 2015 && minorVersion() >= 5)) {
        plugInPath_ = onTargetVolume(platform, sharedPlugInFolder);
    } else if (!second.empty()) {
        plugInPath_ = onTargetVolume(platform, decodedUtf8(second).value_or(""));
    } else {
        plugInPath_ = pathBelow(appPath_, "Plug-Ins");
    }
    scriptsPath_ = pathBelow(appPath_, "Presets/Scripts");
    panelsPath_ = pathBelow(plugInPath_, "Panels");
    hostIsInstalled_ =
        !appPath_.empty() && !plugInPath_.empty() && holdsApplication(platform.files, appPath_);
}

std::uint32_t PhotoshopHostModel::version() const {
    static constexpr std::string_view elements = " Elements";
    static constexpr std::string_view creativeSuite = " CS";
    const std::string_view name = hostName_;
    if (isElements()) return firstNumber(name.substr(name.find(elements) + elements.size()));
    if (const std::size_t place = name.find(creativeSuite); place != std::string_view::npos) {
        return unsignedValue(name.substr(place + creativeSuite.size()));
    }
    if (const std::size_t place = name.find(" CC"); place != std::string_view::npos) {
        // " CC" and one more character come before the year. Without a year it is the first CC
        // release, which ranks one above CS6.
        const std::optional<std::string> year = characters(name.substr(place), 4, 4);
        return year ? firstNumber(*year) : versionOfBareCC;
    }
    return 0;
}

std::uint32_t PhotoshopHostModel::minorVersion() const {
    const std::string_view name = hostName_;
    const std::size_t place = name.find(" CC");
    if (place == std::string_view::npos) return 0;
    const std::string release = characters(name.substr(place), 4).value_or("");
    const std::size_t point = release.find('.');
    return point == std::string::npos ? 0 : unsignedValue(release.substr(point + 1));
}

bool PhotoshopHostModel::isElements() const {
    return contains(hostName_, " Elements");
}

std::uint32_t PhotoshopHostModel::photoshopVersionFromDisplayName() const {
    return isElements() ? 0 : version();
}

bool PhotoshopHostModel::hostIsAtLeastVersionCS(std::int32_t version) const {
    return this->version() >= static_cast<std::uint32_t>(version);
}

bool PhotoshopHostModel::hostIsAtLeastVersionElements(std::int32_t version) const {
    return hostIsAtLeastVersionCS(version);
}

bool PhotoshopHostModel::shouldInstallScripts() const {
    // "Elements" without a blank before it, unlike isElements: the word alone rules scripts out.
    return !contains(hostName_, " CS2") && !contains(hostName_, "Elements");
}

bool PhotoshopHostModel::shouldInstallPanels() const {
    return hostIsAtLeastVersionCS(4);
}

std::uint64_t PhotoshopHostModel::displaySortOrder() const {
    // The list sorts ascending, and 1000 - version wraps below zero for year releases on purpose:
    // they come after every CS release, newest first.
    const std::uint32_t base = isElements() ? 3000U : 1000U;
    return base - version();
}

}  // namespace installer

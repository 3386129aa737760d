#include "linux/desktop/LinuxApplicationDatabase.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/PackageLayout.h"
#include "linux/desktop/DesktopEntry.h"
#include "ports/Bundle.h"
#include "ports/SystemLog.h"
#include "privileged/files/RegularFile.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {

namespace {

constexpr std::string_view applicationSuffix = ".app";

bool isRegularFile(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Payloads that were made for another system carry its kind of executable.
bool isForeignExecutable(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    std::array<char, 4> bytes{};
    if (!file || ::read(file.get(), bytes.data(), bytes.size()) != 4) return false;
    constexpr std::array<std::string_view, 6> marks = {"\xFE\xED\xFA\xCE", "\xFE\xED\xFA\xCF",
                                                       "\xCE\xFA\xED\xFE", "\xCF\xFA\xED\xFE",
                                                       "\xCA\xFE\xBA\xBE", "\xBE\xBA\xFE\xCA"};
    return std::find(marks.begin(), marks.end(), std::string_view(bytes.data(), bytes.size())) !=
           marks.end();
}

bool callsItselfApplication(const Bundle& bundle, const std::string& path) {
    if (const auto type = bundle.informationValue("CFBundlePackageType")) return *type == "APPL";
    return lastPathComponent(path).ends_with(applicationSuffix);
}

/// The path of the program that starts the application; nullopt if this system cannot start it.
std::optional<std::string> executableOf(const Bundle& bundle, const std::string& path) {
    auto executable = namedProgram(path, bundle);
    struct stat status{};
    if (!executable || ::stat(executable->c_str(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode) || (status.st_mode & 0111) == 0) return std::nullopt;
    return isForeignExecutable(*executable) ? std::nullopt : std::move(executable);
}

bool canBeShown(const std::string& name) {
    return !trimmed(name).empty() && isUtf8(name);
}

std::string nameOf(const Bundle& bundle, const std::string& path) {
    for (const char* key : {"CFBundleDisplayName", "CFBundleName"}) {
        const auto name = bundle.informationValue(key);
        if (name && canBeShown(*name)) return *name;
    }
    std::string name = lastPathComponent(path);
    if (name.ends_with(applicationSuffix)) name.resize(name.size() - applicationSuffix.size());
    return name;
}

std::string iconOf(const Bundle& bundle) {
    std::string name = bundle.informationValue("CFBundleIconFile").value_or("");
    if (!isPlainFileName(name)) return "";
    // The entry names the icon in the format of another desktop, or without any suffix; what
    // desktops here can show lies beside it.
    for (const char* suffix : {".icns", ".png", ".svg"})
        if (name.ends_with(suffix)) name.resize(name.size() - std::string_view(suffix).size());
    for (const char* suffix : {".png", ".svg"}) {
        std::string icon = joinPath(bundle.resourcesFolder(), name + suffix);
        if (isRegularFile(icon)) return icon;
    }
    return "";
}

/// Nothing, or an entry that this installer wrote. What else has the name is somebody's own work.
bool mayReplace(const std::string& path) {
    constexpr std::size_t longestEntry = 65536;
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0) return true;
    if (!S_ISREG(status.st_mode)) return false;
    const auto text = readBeginning(path, longestEntry);
    return text && isOwnDesktopEntry(text.value());
}

}  // namespace

LinuxApplicationDatabase::LinuxApplicationDatabase(const LinuxSearchPaths& searchPaths,
                                                   Bundles& bundles, SystemLog& log)
    : searchPaths_(searchPaths),
      folder_(searchPaths.userApplicationsFolder()),
      files_(searchPaths.homeFolder()),
      bundles_(bundles),
      log_(log) {}

std::int32_t LinuxApplicationDatabase::registerApplication(const std::string& path) {
    const auto registration = registrationOf(path);
    if (!registration) return 0;
    const auto error = write(*registration);
    if (error) log_.log("Could not register the application " + path + ": " + error.message());
    return error.value();
}

std::optional<std::string> LinuxApplicationDatabase::entryOf(const std::string& path) const {
    auto registration = registrationOf(path);
    if (!registration || !registration->text) return std::nullopt;
    return std::move(registration->path);
}

std::optional<LinuxApplicationDatabase::Registration> LinuxApplicationDatabase::registrationOf(
    const std::string& path) const {
    if (!folder_) return std::nullopt;
    const auto bundle = bundles_.open(path);
    if (!bundle || !callsItselfApplication(*bundle, path)) return std::nullopt;
    const auto executable = executableOf(*bundle, path);
    if (!executable) return std::nullopt;
    const std::string name = nameOf(*bundle, path);
    const auto identifier = bundle->informationValue("CFBundleIdentifier");
    const std::string file =
        desktopEntryFileName(identifier && !identifier->empty() ? *identifier : name);
    return Registration{joinPath(*folder_, file),
                        desktopEntryText({name, searchPaths_.asSeenOnTargetVolume(*executable),
                                          searchPaths_.asSeenOnTargetVolume(iconOf(*bundle))})};
}

std::error_code LinuxApplicationDatabase::write(const Registration& registration) const {
    if (!registration.text) return {EINVAL, std::system_category()};
    if (!mayReplace(registration.path)) return {EEXIST, std::system_category()};
    return files_.replace(registration.path, *registration.text,
                          UserFiles::Durability::whenConvenient);
}

}  // namespace installer

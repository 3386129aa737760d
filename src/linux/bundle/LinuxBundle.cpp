#include "linux/bundle/LinuxBundle.h"

#include <charconv>
#include <filesystem>
#include <system_error>
#include <utility>

#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/PackageLayout.h"
#include "linux/bundle/StringsTable.h"
#include "linux/process/PreferredLanguages.h"
#include "ports/SystemLog.h"
#include "privileged/files/RegularFile.h"

namespace installer {

namespace {

constexpr std::size_t largestTable = std::size_t{16} << 20;
constexpr std::size_t largestInformation = std::size_t{4} << 20;
constexpr std::string_view languageSuffix = ".lproj";

/// A path with a NUL names nothing, never what stands before the NUL.
bool canName(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return canName(path) && std::filesystem::is_directory(path, error);
}

bool exists(const std::string& path) {
    std::error_code error;
    return canName(path) && std::filesystem::exists(path, error);
}

bool isBundle(const std::string& folder) {
    if (isPackageName(lastPathComponent(folder))) return true;
    std::error_code error;
    return std::filesystem::exists(
        std::filesystem::symlink_status(joinPath(folder, packageInformation), error));
}

std::vector<std::string> languagesIn(const std::string& resources) {
    std::vector<std::string> languages;
    std::error_code error;
    std::filesystem::directory_iterator entry(resources, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.size() > languageSuffix.size() && name.ends_with(languageSuffix) &&
            isFolder(entry->path().string()))
            languages.push_back(name.substr(0, name.size() - languageSuffix.size()));
    }
    return languages;
}

std::string textOfNumber(double number) {
    // The shortest form that means the same number: "1.5", never "1.500000".
    std::string text(32, '\0');
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
    text.resize(static_cast<std::size_t>(end.ptr - text.data()));
    return text;
}

}  // namespace

LinuxBundle::LinuxBundle(std::string folder, const std::vector<std::string>& preferredLanguages,
                         SystemLog& log)
    : folder_(std::move(folder)), log_(log) {
    const std::string resources = resourcesFolder();
    language_ = chosenLanguage(preferredLanguages, languagesIn(resources));
    if (language_.empty()) return;
    const auto add = [&](const std::string& language) {
        languageFolders_.push_back(joinPath(resources, language + std::string(languageSuffix)));
    };
    add(language_);
    if (language_ != fallbackLanguage) add(fallbackLanguage);
}

std::optional<std::string> LinuxBundle::runningBundleFolder() {
    std::error_code error;
    const std::string executable = std::filesystem::read_symlink("/proc/self/exe", error).string();
    return error ? std::nullopt : packageOfProgram(executable);
}

std::string LinuxBundle::resourcesFolder() const {
    return joinPath(folder_, packageResources);
}

std::string LinuxBundle::sharedSupportFolder() const {
    return joinPath(folder_, packageSharedSupport);
}

std::optional<std::string> LinuxBundle::resourcePath(const std::string& name,
                                                     const std::string& type) const {
    const std::string file = type.empty() ? name : name + "." + type;
    for (const auto& folder : languageFolders_) {
        std::string path = joinPath(folder, file);
        if (exists(path)) return path;
    }
    std::string shared = joinPath(resourcesFolder(), file);
    if (exists(shared)) return shared;
    return std::nullopt;
}

std::optional<std::string> LinuxBundle::localizedString(const std::string& key,
                                                        const std::string& tableName) const {
    const Table& texts = table(tableName);
    const auto found = texts.find(key);
    if (found == texts.end()) return std::nullopt;
    return found->second;
}

const LinuxBundle::Table& LinuxBundle::table(const std::string& name) const {
    const auto known = tables_.find(name);
    if (known != tables_.end()) return known->second;
    std::vector<std::string> folders = languageFolders_;
    folders.push_back(resourcesFolder());
    for (const auto& folder : folders) {
        if (auto read = readTable(joinPath(folder, name + ".strings")))
            return tables_.emplace(name, std::move(*read)).first->second;
    }
    return tables_[name];
}

std::optional<LinuxBundle::Table> LinuxBundle::readTable(const std::string& path) const {
    const auto bytes = readRegularFile(path, largestTable);
    if (!bytes) {
        if (bytes.error() != std::errc::no_such_file_or_directory)
            log_.log("Could not read the string table " + path + ": " + bytes.error().message());
        return std::nullopt;
    }
    StringsTable read = parseStringsTable(bytes.value());
    for (const auto& problem : read.problems)
        log_.log(path + ":" + std::to_string(problem.line) + ": " + problem.message);
    return std::move(read.entries);
}

std::optional<std::string> LinuxBundle::informationValue(const std::string& key) const {
    if (!information_) information_ = readInformation();
    const auto value = information_->value(key);
    if (!value) return std::nullopt;
    if (const auto* text = std::get_if<std::string>(&*value)) return *text;
    if (const auto* integer = std::get_if<std::int64_t>(&*value)) return std::to_string(*integer);
    if (const auto* real = std::get_if<double>(&*value)) return textOfNumber(*real);
    return std::nullopt;
}

PropertyList LinuxBundle::readInformation() const {
    const std::string path = joinPath(folder_, packageInformation);
    const auto bytes = readRegularFile(path, largestInformation);
    if (!bytes) {
        if (bytes.error() != std::errc::no_such_file_or_directory)
            log_.log("Could not read the property list " + path + ": " + bytes.error().message());
        return {};
    }
    auto list = PropertyList::parse(bytes.value());
    if (!list) log_.log("The property list " + path + " is broken; its values are not used");
    return list ? std::move(*list) : PropertyList();
}

LinuxBundles::LinuxBundles(std::vector<std::string> preferredLanguages, SystemLog& log)
    : preferredLanguages_(std::move(preferredLanguages)), log_(log) {}

std::unique_ptr<Bundle> LinuxBundles::open(const std::string& path) {
    if (!isFolder(path) || !isBundle(path)) return nullptr;
    return std::make_unique<LinuxBundle>(path, preferredLanguages_, log_);
}

}  // namespace installer

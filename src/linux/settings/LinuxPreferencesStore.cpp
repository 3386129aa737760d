#include "linux/settings/LinuxPreferencesStore.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/files/LinuxSearchPaths.h"
#include "ports/SystemLog.h"
#include "privileged/files/RegularFile.h"

namespace installer {

namespace {

constexpr std::size_t largestFile = std::size_t{16} << 20;

bool isDomain(const std::string& name) {
    return !name.empty() && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

/// Whether a property list can hold the text as text, in either form.
bool isPlainText(const std::string& text) {
    const bool hasControl = std::any_of(text.begin(), text.end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x20 && character != '\t' &&
               character != '\n';
    });
    return !hasControl && isUtf8(text);
}

void apply(PropertyList& list, const std::string& key,
           const std::optional<PreferenceValue>& value) {
    if (!value) return list.remove(key);
    const auto* text = std::get_if<std::string>(&*value);
    if (text != nullptr && !isPlainText(*text)) return list.setData(key, *text);
    list.set(key, *value);
}

}  // namespace

LinuxPreferencesStore::LinuxPreferencesStore(const LinuxSearchPaths& searchPaths, SystemLog& log)
    : folder_(searchPaths.userPreferencesFolder()), files_(searchPaths.homeFolder()), log_(log) {}

std::optional<PreferenceValue> LinuxPreferencesStore::value(const std::string& domain,
                                                            const std::string& key) {
    if (!isDomain(domain)) return std::nullopt;
    if (const auto changes = unsaved_.find(domain); changes != unsaved_.end()) {
        const auto changed = changes->second.find(key);
        if (changed != changes->second.end()) return changed->second;
    }
    if (!folder_) return std::nullopt;
    const auto list = stored(pathOf(domain));
    if (!list) return std::nullopt;
    if (const auto value = list->value(key)) return value;
    // Other programs' data is left alone as far as it can be told from a text of our own.
    const auto bytes = list->data(key);
    if (!bytes || isPlainText(*bytes)) return std::nullopt;
    return *bytes;
}

void LinuxPreferencesStore::setValue(const std::string& domain, const std::string& key,
                                     std::optional<PreferenceValue> value) {
    if (!isDomain(domain)) {
        log_.log("Could not store a setting: \"" + domain + "\" is no settings domain");
        return;
    }
    unsaved_[domain][key] = std::move(value);
}

bool LinuxPreferencesStore::synchronize(const std::string& domain) {
    if (!isDomain(domain)) return false;
    const auto changes = unsaved_.find(domain);
    if (changes == unsaved_.end()) return true;
    if (!folder_) {
        report(domain, "the user has no home folder");
        return false;
    }
    if (!write(pathOf(domain), changes->second)) return false;
    unsaved_.erase(changes);
    return true;
}

bool LinuxPreferencesStore::synchronizeAll() {
    std::vector<std::string> domains;
    domains.reserve(unsaved_.size());
    for (const auto& [domain, changes] : unsaved_) domains.push_back(domain);
    bool succeeded = true;
    for (const std::string& domain : domains) succeeded = synchronize(domain) && succeeded;
    return succeeded;
}

std::string LinuxPreferencesStore::pathOf(const std::string& domain) const {
    return joinPath(folder_.value_or(""), domain + ".plist");
}

std::optional<PropertyList> LinuxPreferencesStore::stored(const std::string& path) {
    const auto bytes = readRegularFile(path, largestFile);
    if (!bytes && bytes.error() == std::errc::no_such_file_or_directory) return PropertyList();
    if (!bytes) {
        report(path, bytes.error().message());
        return std::nullopt;
    }
    auto list = PropertyList::parse(bytes.value());
    if (!list) report(path, "it is no property list; it counts as empty");
    return list ? std::move(*list) : PropertyList();
}

bool LinuxPreferencesStore::write(const std::string& path, const Changes& changes) {
    auto list = stored(path);
    if (!list) return false;
    for (const auto& [key, value] : changes) apply(*list, key, value);
    const auto contents = list->serialized();
    if (!contents) return false;
    const auto error = files_.replace(path, *contents, UserFiles::Durability::atOnce);
    if (error) log_.log("Could not write the settings " + path + ": " + error.message());
    return !error;
}

void LinuxPreferencesStore::report(const std::string& path, const std::string& what) {
    if (reported_.insert(path).second) log_.log("Could not use the settings " + path + ": " + what);
}

}  // namespace installer

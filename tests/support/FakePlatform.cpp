#include "tests/support/FakePlatform.h"

#include <algorithm>
#include <numeric>

#include "foundation/text/Text.h"
#include "foundation/values/SystemFolders.h"
#include "foundation/values/VisibleText.h"

namespace installer::test {

namespace {

template <class Key, class Value>
std::optional<Value> lookedUp(const std::map<Key, Value>& values, const Key& key) {
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

}  // namespace

std::optional<std::string> FakeBundle::resourcePath(const std::string& name,
                                                    const std::string& type) const {
    if (whenAsked) whenAsked(name + "." + type);
    return lookedUp(resources, name + "." + type);
}

std::optional<std::string> FakeBundle::localizedString(const std::string& key,
                                                       const std::string& table) const {
    if (whenAsked) whenAsked(key);
    const auto found = tables.find(table);
    return found == tables.end() ? std::nullopt : lookedUp(found->second, key);
}

std::optional<std::string> FakeBundle::informationValue(const std::string& key) const {
    return lookedUp(information, key);
}

std::unique_ptr<Bundle> FakeBundles::open(const std::string& path) {
    opened.push_back(path);
    const auto found = informationByPath.find(path);
    if (found == informationByPath.end()) return nullptr;
    auto bundle = std::make_unique<FakeBundle>();
    bundle->folder = path;
    bundle->information = found->second;
    return bundle;
}

std::string FakeSearchPaths::loginName() const {
    if (whenLoginNameIsAsked) whenLoginNameIsAsked();
    return login;
}

std::string FakeSearchPaths::localApplicationSupportFolder() const {
    return onTargetVolume("/Library/Application Support");
}

std::string FakeSearchPaths::localApplicationsFolder() const {
    return onTargetVolume("/Applications");
}

std::optional<std::string> FakeSearchPaths::userApplicationSupportFolder() const {
    const auto folder = homeFolder();
    if (!folder) return std::nullopt;
    return *folder + "/Library/Application Support";
}

std::optional<std::string> FakeSearchPaths::userPreferencesFolder() const {
    const auto folder = homeFolder();
    if (!folder) return std::nullopt;
    return *folder + "/Library/Preferences";
}

std::optional<std::string> FakeSearchPaths::homeFolder() const {
    return volume.empty() ? home : volume + "/Users/" + homeName.value_or(login);
}

std::string FakeSearchPaths::onTargetVolume(const std::string& path) const {
    if (volume.empty() || path.empty()) return path;
    std::string inside;  // on the volume; a ".." at its top stays there
    for (const std::string& name : split(path, '/')) {
        if (name == "..") {
            inside.erase(std::min(inside.rfind('/'), inside.size()));
        } else if (!name.empty() && name != ".") {
            inside += "/" + name;
        }
    }
    return volume + inside;
}

std::string FakeSearchPaths::asSeenOnTargetVolume(const std::string& path) const {
    if (volume.empty()) return path;
    if (path == volume) return "/";
    return path.starts_with(volume + "/") ? path.substr(volume.size()) : path;
}

bool FakeSearchPaths::isProtected(const std::string& path) const {
    const std::vector<std::string> homes = {home.value_or("")};
    return isInSystemFolder(asSeenOnTargetVolume(path), homes);
}

std::optional<PreferenceValue> FakePreferencesStore::value(const std::string& domain,
                                                           const std::string& key) {
    return lookedUp(values, Key(domain, key));
}

void FakePreferencesStore::setValue(const std::string& domain, const std::string& key,
                                    std::optional<PreferenceValue> value) {
    unsaved_.insert({domain, key});
    if (value) {
        values[{domain, key}] = *value;
    } else {
        values.erase({domain, key});
    }
}

bool FakePreferencesStore::synchronize(const std::string& domain) {
    synchronized.push_back(domain);
    const auto isOfDomain = [&](const Key& key) { return key.first == domain; };
    if (std::none_of(unsaved_.begin(), unsaved_.end(), isOfDomain)) return true;
    if (!canWrite) return false;
    for (const Key& key : unsaved_) {
        if (!isOfDomain(key)) continue;
        onDisk.erase(key);
        if (const auto value = lookedUp(values, key)) onDisk[key] = *value;
    }
    std::erase_if(unsaved_, isOfDomain);
    return true;
}

std::string RecordingLog::text() const {
    std::string text;
    for (std::string_view line : lines) {
        if (line.ends_with('\n')) line.remove_suffix(1);
        text += visibleText(line) + "\n";
    }
    return text;
}

bool RecordingLog::has(std::string_view line) const {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

std::size_t RecordingAlerts::runModal(const Alert& alert) {
    shown.push_back(alert);
    if (whenShown) whenShown();
    return answer;
}

std::int32_t RecordingApplicationDatabase::registerApplication(const std::string& path) {
    journal_.push_back("register " + path);
    if (status == 0 && !otherItems.contains(path)) known.insert(path);
    return status;
}

std::chrono::microseconds RecordingClock::slept() const {
    static constexpr std::chrono::microseconds none{0};
    return std::accumulate(sleeps.begin(), sleeps.end(), none,
                           [](auto sum, auto sleep) { return sum + std::max(sleep, none); });
}

void RecordingClock::sleep(std::chrono::microseconds duration) {
    sleeps.push_back(duration);
    if (duringSleep) duringSleep();
}

FakePlatform::FakePlatform() {
    bundle.tables["installer"] = {{"company_name", "Acme"}, {"product_name", "Filters 2"}};
}

}  // namespace installer::test

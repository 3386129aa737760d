#include "tests/support/FakePlatform.h"

#include <algorithm>

#include "foundation/values/SystemFolders.h"

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
    return volume + "/Library/Application Support";
}

std::string FakeSearchPaths::localApplicationsFolder() const {
    return volume + "/Applications";
}

std::optional<std::string> FakeSearchPaths::userApplicationSupportFolder() const {
    if (!home) return std::nullopt;
    return volume + *home + "/Library/Application Support";
}

std::optional<std::string> FakeSearchPaths::userPreferencesFolder() const {
    if (!home) return std::nullopt;
    return volume + *home + "/Library/Preferences";
}

std::optional<std::string> FakeSearchPaths::homeFolder() const {
    if (!home) return std::nullopt;
    return volume + *home;
}

std::string FakeSearchPaths::onTargetVolume(const std::string& path) const {
    return path.empty() ? path : volume + path;
}

std::string FakeSearchPaths::asSeenOnTargetVolume(const std::string& path) const {
    return path.starts_with(volume + "/") ? path.substr(volume.size()) : path;
}

bool FakeSearchPaths::isProtected(const std::string& path) const {
    const std::vector<std::string> homes = {home.value_or("")};
    return isInSystemFolder(asSeenOnTargetVolume(path), homes);
}

std::optional<PreferenceValue> FakePreferencesStore::value(const std::string& domain,
                                                           const std::string& key) {
    return lookedUp(values, {domain, key});
}

void FakePreferencesStore::setValue(const std::string& domain, const std::string& key,
                                    std::optional<PreferenceValue> value) {
    if (value) {
        values[{domain, key}] = *value;
    } else {
        values.erase({domain, key});
    }
}

bool FakePreferencesStore::synchronize(const std::string& domain) {
    synchronized.push_back(domain);
    return canWrite;
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
    return status;
}

void RecordingClock::sleep(std::chrono::microseconds duration) {
    sleeps.push_back(duration);
    if (duringSleep) duringSleep();
}

void CountingEventLoop::runUntilNow() {
    ++turns;
    if (duringTurn) duringTurn();
}

std::unique_ptr<ChildProcess> NoChildProcesses::create(const std::string&,
                                                       const std::vector<std::string>&) {
    return nullptr;
}

FakePlatform::FakePlatform() {
    bundle.tables["installer"] = {{"company_name", "Acme"}, {"product_name", "Filters 2"}};
}

}  // namespace installer::test

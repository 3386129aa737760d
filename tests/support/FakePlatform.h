#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "foundation/observers/NotificationCenter.h"
#include "ports/Alerts.h"
#include "ports/ApplicationDatabase.h"
#include "ports/Bundle.h"
#include "ports/Clock.h"
#include "ports/Platform.h"
#include "ports/PreferencesStore.h"
#include "ports/SearchPaths.h"
#include "ports/SystemLog.h"
#include "tests/support/FakeAuthorization.h"
#include "tests/support/FakeChildProcess.h"
#include "tests/support/FakeEventLoop.h"
#include "tests/support/FakeFileQuery.h"
#include "tests/support/MemoryFileManager.h"
#include "tests/support/RecordingFileManager.h"

namespace installer::test {

/// A bundle made of values. Tables are named; a key that is not in them is missing.
class FakeBundle : public Bundle {
  public:
    std::string folder = "/Installer.app";
    std::map<std::string, std::map<std::string, std::string>> tables;
    std::map<std::string, std::string> information;
    std::string language = "en";
    std::map<std::string, std::string> resources;  ///< "license.txt" -> path
    /// Told each key ("continue") and each resource ("license.txt") that is looked up.
    std::function<void(const std::string& what)> whenAsked;

    std::string resourcesFolder() const override { return folder + "/Contents/Resources"; }
    std::string sharedSupportFolder() const override { return folder + "/Contents/SharedSupport"; }
    std::optional<std::string> resourcePath(const std::string& name,
                                            const std::string& type) const override;
    std::optional<std::string> localizedString(const std::string& key,
                                               const std::string& table) const override;
    std::string localization() const override { return language; }
    std::optional<std::string> informationValue(const std::string& key) const override;
};

/// Bundles by path: a path that is not among them is no bundle.
class FakeBundles : public Bundles {
  public:
    std::map<std::string, std::map<std::string, std::string>> informationByPath;
    std::vector<std::string> opened;  ///< each path that was asked for, in order
    std::unique_ptr<Bundle> open(const std::string& path) override;
};

/// User "tester" with the home /Users/tester on the running system, or on a volume when one is set.
class FakeSearchPaths : public SearchPaths {
  public:
    std::string volume;  ///< such as "/Volumes/Other"; empty for the running system
    std::optional<std::string> home = "/Users/tester";
    std::vector<std::string> languages = {"en"};
    std::string login = "tester";
    /// The name of the home folder on a target volume, if it is not the login name.
    std::optional<std::string> homeName;
    std::function<void()> whenLoginNameIsAsked;

    std::string localApplicationSupportFolder() const override;
    std::string localApplicationsFolder() const override;
    std::optional<std::string> userApplicationSupportFolder() const override;
    std::optional<std::string> userPreferencesFolder() const override;
    std::optional<std::string> homeFolder() const override;
    std::string loginName() const override;
    std::vector<std::string> preferredLanguages() const override { return languages; }
    std::string onTargetVolume(const std::string& path) const override;
    std::string asSeenOnTargetVolume(const std::string& path) const override;
    bool isProtected(const std::string& path) const override;
};

/// Settings by domain and key.
class FakePreferencesStore : public PreferencesStore {
  public:
    using Key = std::pair<std::string, std::string>;

    std::map<Key, PreferenceValue> values;  ///< as this process sees them
    std::map<Key, PreferenceValue> onDisk;  ///< what it has synchronized
    std::vector<std::string> synchronized;  ///< domains, in order
    bool canWrite = true;

    std::optional<PreferenceValue> value(const std::string& domain,
                                         const std::string& key) override;
    void setValue(const std::string& domain, const std::string& key,
                  std::optional<PreferenceValue> value) override;
    bool synchronize(const std::string& domain) override;

  private:
    std::set<Key> unsaved_;
};

class RecordingLog : public SystemLog {
  public:
    std::vector<std::string> lines;  ///< as they were given, with a line feed at their end
    /// What a reader of the log sees.
    [[nodiscard]] std::string text() const;
    void log(std::string_view line) override { lines.emplace_back(line); }
    [[nodiscard]] bool has(std::string_view line) const;
};

class RecordingAlerts : public Alerts {
  public:
    std::vector<Alert> shown;
    std::size_t answer = 0;
    std::function<void()> whenShown;
    std::size_t runModal(const Alert& alert) override;
};

class RecordingApplicationDatabase : public ApplicationDatabase {
  public:
    explicit RecordingApplicationDatabase(std::vector<std::string>& journal) : journal_(journal) {}
    std::int32_t status = 0;
    std::set<std::string> otherItems;  ///< those that are no applications
    std::set<std::string> known;
    std::int32_t registerApplication(const std::string& path) override;

  private:
    std::vector<std::string>& journal_;
};

class RecordingClock : public Clock {
  public:
    std::vector<std::chrono::microseconds> sleeps;
    std::function<void()> duringSleep;  ///< what happens on the disk meanwhile
    [[nodiscard]] std::chrono::microseconds slept() const;
    void sleep(std::chrono::microseconds duration) override;
    /// How much time has passed beside the sleeps.
    std::chrono::nanoseconds passed{0};
    [[nodiscard]] std::chrono::nanoseconds now() const override { return passed + slept(); }
};

/// A whole platform of fakes over a file system in memory. What changes something, by the user or
/// by the administrator, stands in `journal` in the order in which it happened.
class FakePlatform {
  public:
    FakePlatform();

    std::vector<std::string> journal;
    MemoryFileManager memory;
    RecordingFileManager files{memory, journal};
    FakeAuthorizations authorizations{memory, journal};
    FakeEventLoop eventLoop;
    FakeChildProcesses processes{eventLoop};
    FakeFileQueries fileQueries{eventLoop.turns, journal};
    FakePreferencesStore preferences;
    FakeBundle bundle;
    FakeBundles bundles;
    FakeSearchPaths searchPaths;
    RecordingApplicationDatabase applications{journal};
    RecordingAlerts alerts;
    RecordingLog log;
    RecordingClock clock;
    NotificationCenter notifications;

    Platform platform{files,       fileQueries, authorizations, processes,    eventLoop,
                      preferences, bundle,      bundles,        searchPaths,  applications,
                      alerts,      log,         clock,          notifications};
};

/// The same machine with other files and other ways to the administrator.
inline Platform platformWith(FileManager& files, Authorizations& authorizations,
                             FakePlatform& fake) {
    return {files,
            fake.fileQueries,
            authorizations,
            fake.processes,
            fake.eventLoop,
            fake.preferences,
            fake.bundle,
            fake.bundles,
            fake.searchPaths,
            fake.applications,
            fake.alerts,
            fake.log,
            fake.clock,
            fake.notifications};
}

/// The same machine with other files.
inline Platform platformWith(FileManager& files, FakePlatform& fake) {
    return platformWith(files, fake.authorizations, fake);
}

}  // namespace installer::test

#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "linux/bundle/PropertyList.h"
#include "linux/files/UserFiles.h"
#include "ports/PreferencesStore.h"

namespace installer {

class LinuxSearchPaths;
class SystemLog;

/// The settings of each domain in the property list DOMAIN.plist of the user's preferences folder.
///
/// `synchronize` reads the file anew, changes only the keys that this process set and replaces the
/// file whole, in the form (XML or binary) that it had; a new one is XML. A broken file is logged
/// and counts as empty; it is replaced only when something was set. One that cannot be read at all
/// is never replaced.
///
/// Texts that no property list can hold as text (file names may be any bytes) are kept as data.
class LinuxPreferencesStore final : public PreferencesStore {
  public:
    /// For a user without a home folder nothing is stored, and a domain in which something was set
    /// fails to synchronize.
    LinuxPreferencesStore(const LinuxSearchPaths& searchPaths, SystemLog& log);

    /// A domain that is empty, or holds "/" or a NUL, is refused: it has no values and cannot be
    /// synchronized.
    [[nodiscard]] std::optional<PreferenceValue> value(const std::string& domain,
                                                       const std::string& key) override;
    void setValue(const std::string& domain, const std::string& key,
                  std::optional<PreferenceValue> value) override;
    [[nodiscard]] bool synchronize(const std::string& domain) override;

    /// The same for every domain in which something was set; a failure in one does not keep the
    /// others from the disk. For the end of the process.
    [[nodiscard]] bool synchronizeAll();

  private:
    using Changes = std::map<std::string, std::optional<PreferenceValue>>;

    [[nodiscard]] std::string pathOf(const std::string& domain) const;
    /// The domain's file; empty if it is missing or broken, nullopt if it cannot be read.
    [[nodiscard]] std::optional<PropertyList> stored(const std::string& path);
    [[nodiscard]] bool write(const std::string& path, const Changes& changes);
    void report(const std::string& path, const std::string& what);

    std::optional<std::string> folder_;
    UserFiles files_;
    SystemLog& log_;
    std::map<std::string, Changes> unsaved_;
    std::set<std::string> reported_;
};

}  // namespace installer

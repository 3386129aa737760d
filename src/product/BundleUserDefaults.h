#pragma once

#include <map>
#include <optional>
#include <string>

#include "foundation/observers/Subscription.h"
#include "ports/PreferencesStore.h"

namespace installer {

struct Platform;

/// The current user's settings of one named domain, over defaults that only this object knows. A
/// setting that was set is seen by every object of the domain at once and reaches the disk with
/// `synchronize`, which every living object also does when the application ends.
class BundleUserDefaults {
  public:
    using Registration = std::map<std::string, PreferenceValue>;

    BundleUserDefaults(const Platform& platform, std::string persistentDomainName);
    BundleUserDefaults(const BundleUserDefaults&) = delete;
    BundleUserDefaults& operator=(const BundleUserDefaults&) = delete;

    /// The stored value, else the registered default, else nullopt.
    [[nodiscard]] std::optional<PreferenceValue> objectForKey(const std::string& key) const;
    void setObject(PreferenceValue value, const std::string& forKey);

    /// Removes the stored value: the registered default shows again.
    void removeObjectForKey(const std::string& key);

    /// Makes these the defaults, in place of all that were registered before. They are never
    /// stored.
    void registerDefaults(Registration defaults);

    /// Writes what was set in the domain to the disk; whether that succeeded.
    bool synchronize();

    /// The value as a truth: a true boolean, a number other than 0, or the text "YES", "true" or
    /// "1" in any letter case. False for everything else, and for no value.
    [[nodiscard]] bool boolForKey(const std::string& key) const;
    void setBool(bool value, const std::string& forKey);

    /// The value as text, numbers and booleans (1 or 0) in decimal; nullopt if there is no value.
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const;

  private:
    std::string applicationID_;
    Registration registrationDictionary_;
    PreferencesStore& store_;
    Subscription termination_;
};

}  // namespace installer

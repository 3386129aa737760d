#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace installer {

using PreferenceValue = std::variant<bool, std::int64_t, double, std::string>;

/// The current user's settings, by domain and key. A value that was set belongs to the process at
/// once, for every reader of the domain, and to the disk after `synchronize`.
class PreferencesStore {
  public:
    virtual ~PreferencesStore() = default;

    /// The value, or nullopt if there is none of a type that a setting can have.
    [[nodiscard]] virtual std::optional<PreferenceValue> value(const std::string& domain,
                                                               const std::string& key) = 0;

    /// Sets the value; without one the key is removed.
    virtual void setValue(const std::string& domain, const std::string& key,
                          std::optional<PreferenceValue> value) = 0;

    /// Writes what was set in the domain to the disk: the whole domain or, on a failure, nothing.
    /// Keys that this process did not set keep what the disk says. A domain in which nothing was
    /// set since the last time is a success and writes nothing.
    [[nodiscard]] virtual bool synchronize(const std::string& domain) = 0;
};

}  // namespace installer

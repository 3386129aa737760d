#include "product/BundleUserDefaults.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>
#include <variant>

#include "foundation/observers/NotificationCenter.h"
#include "foundation/text/Text.h"
#include "ports/Platform.h"

namespace installer {

namespace {

struct AsTruth {
    bool operator()(bool value) const { return value; }
    bool operator()(std::int64_t value) const { return value != 0; }
    bool operator()(double value) const { return value != 0.0; }
    bool operator()(const std::string& value) const {
        return equalIgnoringCase(value, "YES") || equalIgnoringCase(value, "true") || value == "1";
    }
};

struct AsText {
    std::string operator()(bool value) const { return value ? "1" : "0"; }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const {
        // The shortest text of a double has at most 24 characters.
        std::array<char, 32> buffer{};
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
        return {buffer.data(), end};
    }
    std::string operator()(const std::string& value) const { return value; }
};

}  // namespace

BundleUserDefaults::BundleUserDefaults(const Platform& platform, std::string persistentDomainName)
    : applicationID_(std::move(persistentDomainName)),
      store_(platform.preferences),
      termination_(platform.notifications.observe(
          applicationWillTerminate, [this](const Notification&) { synchronize(); })) {}

std::optional<PreferenceValue> BundleUserDefaults::objectForKey(const std::string& key) const {
    if (auto stored = store_.value(applicationID_, key)) return stored;
    const auto registered = registrationDictionary_.find(key);
    if (registered == registrationDictionary_.end()) return std::nullopt;
    return registered->second;
}

void BundleUserDefaults::setObject(PreferenceValue value, const std::string& forKey) {
    store_.setValue(applicationID_, forKey, std::move(value));
}

void BundleUserDefaults::removeObjectForKey(const std::string& key) {
    store_.setValue(applicationID_, key, std::nullopt);
}

void BundleUserDefaults::registerDefaults(Registration defaults) {
    registrationDictionary_ = std::move(defaults);
}

bool BundleUserDefaults::synchronize() {
    return store_.synchronize(applicationID_);
}

bool BundleUserDefaults::boolForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    return value && std::visit(AsTruth{}, *value);
}

void BundleUserDefaults::setBool(bool value, const std::string& forKey) {
    setObject(value, forKey);
}

std::optional<std::string> BundleUserDefaults::stringForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    if (!value) return std::nullopt;
    return std::visit(AsText{}, *value);
}

}  // namespace installer

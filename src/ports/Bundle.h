#pragma once

#include <memory>
#include <optional>
#include <string>

namespace installer {

/// A folder that carries a program with its resources, and says who it is in its property list.
class Bundle {
  public:
    virtual ~Bundle() = default;

    /// `Contents/Resources` and `Contents/SharedSupport` of the bundle, whether they exist or not.
    [[nodiscard]] virtual std::string resourcesFolder() const = 0;
    [[nodiscard]] virtual std::string sharedSupportFolder() const = 0;

    /// The file NAME.TYPE of the bundle: the one of the user's language where there is one, else
    /// the one that all languages share; nullopt if there is neither.
    [[nodiscard]] virtual std::optional<std::string> resourcePath(
        const std::string& name, const std::string& type) const = 0;

    /// The text under the key in the string table of the user's language; nullopt if it is missing.
    [[nodiscard]] virtual std::optional<std::string> localizedString(
        const std::string& key, const std::string& table) const = 0;

    /// The language whose texts and files are used, such as "de"; empty when the bundle has none.
    [[nodiscard]] virtual std::string localization() const = 0;

    /// A value of the bundle's property list as text; nullopt if it is missing, or neither text
    /// nor number. A property list that cannot be read has no values.
    [[nodiscard]] virtual std::optional<std::string> informationValue(
        const std::string& key) const = 0;
};

/// Opens bundles other than the running one.
class Bundles {
  public:
    virtual ~Bundles() = default;

    /// The bundle at the path; null if there is no folder that is a bundle.
    [[nodiscard]] virtual std::unique_ptr<Bundle> open(const std::string& path) = 0;
};

}  // namespace installer

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linux/bundle/PropertyList.h"
#include "ports/Bundle.h"

namespace installer {

class SystemLog;

/// A bundle folder on the disk. Nothing in it is ever written to; each string table and the
/// property list are read once, when they are first asked for.
///
/// Language: the best suited of those that the bundle has (see `chosenLanguage`). English stands in
/// for whole files that the language lacks, never for single texts: a table that is there is used
/// as it is. What cannot be read, and each syntax error of a table, is logged with its path.
class LinuxBundle final : public Bundle {
  public:
    LinuxBundle(std::string folder, const std::vector<std::string>& preferredLanguages,
                SystemLog& log);

    /// The folder of the bundle that the running program was started from; nullopt if the program
    /// does not lie in a bundle.
    [[nodiscard]] static std::optional<std::string> runningBundleFolder();

    [[nodiscard]] std::string resourcesFolder() const override;
    [[nodiscard]] std::string sharedSupportFolder() const override;
    [[nodiscard]] std::optional<std::string> resourcePath(const std::string& name,
                                                          const std::string& type) const override;
    [[nodiscard]] std::optional<std::string> localizedString(
        const std::string& key, const std::string& table) const override;
    [[nodiscard]] std::string localization() const override { return language_; }
    [[nodiscard]] std::optional<std::string> informationValue(
        const std::string& key) const override;

  private:
    using Table = std::map<std::string, std::string>;

    [[nodiscard]] const Table& table(const std::string& name) const;
    [[nodiscard]] std::optional<Table> readTable(const std::string& path) const;
    [[nodiscard]] PropertyList readInformation() const;

    std::string folder_;
    std::string language_;
    /// The folder of the chosen language, then the one that stands in for it.
    std::vector<std::string> languageFolders_;
    SystemLog& log_;
    mutable std::map<std::string, Table> tables_;
    mutable std::optional<PropertyList> information_;
};

/// Opens bundle folders: folders with a property list at `Contents/Info.plist`, whatever is in it,
/// and folders that are packages by their name. A link to such a folder is followed.
class LinuxBundles final : public Bundles {
  public:
    LinuxBundles(std::vector<std::string> preferredLanguages, SystemLog& log);

    [[nodiscard]] std::unique_ptr<Bundle> open(const std::string& path) override;

  private:
    std::vector<std::string> preferredLanguages_;
    SystemLog& log_;
};

}  // namespace installer

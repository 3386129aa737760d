#pragma once

#include <optional>
#include <string>
#include <vector>

namespace installer {

/// What a maker ships, as a folder of sources or as a finished bundle. Both hold the same files
/// under the same names; only the folders around them differ.
struct Product {
    enum class Form { folder, bundle };

    Form form = Form::folder;
    std::string root;           ///< as the maker named it, without a separator at its end
    std::string resources;      ///< language folders, `files`, layouts and pictures lie here
    std::string information;    ///< the path of the installer's Info.plist
    std::string sharedSupport;  ///< the folder SharedSupport

    /// None when the path is no folder.
    [[nodiscard]] static std::optional<Product> at(const std::string& path);

    /// The languages that have a folder LANG.lproj, sorted.
    [[nodiscard]] std::vector<std::string> languages() const;
    [[nodiscard]] std::string languageFolder(const std::string& language) const;
    /// The folder `files`.
    [[nodiscard]] std::string payload() const;
    /// The text under the key in the table "installer", English first; empty without one.
    [[nodiscard]] std::string name(const std::string& key) const;
};

inline constexpr const char* languageSuffix = ".lproj";

}  // namespace installer

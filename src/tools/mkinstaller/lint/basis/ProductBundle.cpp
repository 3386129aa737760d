#include "tools/mkinstaller/lint/basis/ProductBundle.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "foundation/values/Paths.h"
#include "linux/bundle/StringsTable.h"
#include "tools/mkinstaller/lint/basis/PropertyListFile.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

std::string absolute(const std::string& path) {
    return withSingleSeparators(std::filesystem::absolute(path).lexically_normal().string());
}

std::string languageOf(const Product& product) {
    const auto languages = product.languages();
    const bool hasEnglish = std::ranges::find(languages, "en") != languages.end();
    if (hasEnglish || languages.empty()) return "en";
    return languages.front();
}

}  // namespace

ProductBundle::ProductBundle(const Product& product, const Kit& kit)
    : product_(product),
      kit_(kit),
      resources_(absolute(product.resources)),
      sharedSupport_(absolute(product.sharedSupport)),
      language_(languageOf(product)) {}

std::optional<std::string> ProductBundle::resourcePath(const std::string& name,
                                                       const std::string& type) const {
    if (type == "ui" && layout_) return layout_;
    const std::string file = type.empty() ? name : name + "." + type;
    for (const std::string& folder :
         {absolute(product_.languageFolder(language_)), resources_, kit_.resources()}) {
        std::string path = joinPath(folder, file);
        if (entryType(path) != EntryType::missing) return path;
    }
    return std::nullopt;
}

std::optional<std::string> ProductBundle::localizedString(const std::string& key,
                                                          const std::string& table) const {
    const auto bytes = contentsOf(joinPath(product_.languageFolder(language_), table + ".strings"));
    if (!bytes) return std::nullopt;
    const StringsTable read = parseStringsTable(*bytes);
    const auto found = read.entries.find(key);
    if (found == read.entries.end()) return std::nullopt;
    return found->second;
}

std::optional<std::string> ProductBundle::informationValue(const std::string& key) const {
    return PropertyListFile(product_.information).text(key);
}

}  // namespace installer

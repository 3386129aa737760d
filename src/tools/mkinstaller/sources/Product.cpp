#include "tools/mkinstaller/sources/Product.h"

#include <algorithm>

#include "foundation/values/Paths.h"
#include "linux/bundle/StringsTable.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

std::optional<Product> Product::at(const std::string& path) {
    const std::string root = withSingleSeparators(path);
    if (root.empty() || !isFolder(root)) return std::nullopt;
    const std::string contents = joinPath(root, "Contents");
    if (isFolder(contents)) {
        return Product{Form::bundle, root, joinPath(contents, "Resources"),
                       joinPath(contents, "Info.plist"), joinPath(contents, "SharedSupport")};
    }
    return Product{Form::folder, root, root, joinPath(root, "Info.plist"),
                   joinPath(root, "SharedSupport")};
}

std::vector<std::string> Product::languages() const {
    std::vector<std::string> languages;
    for (const std::string& name : sortedNames(resources)) {
        if (name.ends_with(languageSuffix) && isFolder(joinPath(resources, name))) {
            languages.push_back(stemOf(name));
        }
    }
    return languages;
}

std::string Product::languageFolder(const std::string& language) const {
    return joinPath(resources, language + languageSuffix);
}

std::string Product::payload() const {
    return joinPath(resources, "files");
}

std::string Product::name(const std::string& key) const {
    std::vector<std::string> order = languages();
    std::ranges::stable_partition(order, [](const std::string& name) { return name == "en"; });
    for (const std::string& language : order) {
        const auto bytes = contentsOf(joinPath(languageFolder(language), "installer.strings"));
        if (!bytes) continue;
        const StringsTable table = parseStringsTable(*bytes);
        const auto found = table.entries.find(key);
        if (found != table.entries.end()) return found->second;
    }
    return {};
}

}  // namespace installer

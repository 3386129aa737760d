#include "tools/mkinstaller/lint/texts/TextTables.h"

#include <algorithm>
#include <set>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

std::string id(const std::string& language, const std::string& name) {
    return language + "/" + name;
}

TextTable readTable(const std::string& file) {
    TextTable table{.file = file, .read = {}};
    if (const auto bytes = contentsOf(file)) {
        table.read = parseStringsTable(*bytes);
        const std::size_t end = bytes->ends_with('\n') ? bytes->size() - 1 : bytes->size();
        table.lastLine = lineOf(*bytes, end);
    }
    return table;
}

}  // namespace

const std::string* TextTable::text(const std::string& key) const {
    if (!read) return nullptr;
    const auto found = read->entries.find(key);
    return found == read->entries.end() ? nullptr : &found->second;
}

std::size_t TextTable::line(const std::string& key) const {
    if (!read) return 1;
    const auto found = read->lines.find(key);
    return found == read->lines.end() ? lastLine : found->second;
}

TextTables::TextTables(const Product& product, const Kit& kit) : languages_(product.languages()) {
    std::ranges::stable_partition(languages_, [](const auto& name) { return name == "en"; });
    std::set<std::string> kitLanguages(languages_.begin(), languages_.end());
    kitLanguages.insert("en");
    for (const std::string& name : names()) {
        const std::string file = name + ".strings";
        for (const std::string& language : languages_) {
            tables_[id(language, name)] =
                readTable(joinPath(product.languageFolder(language), file));
        }
        for (const std::string& language : kitLanguages) {
            const std::string folder = joinPath(kit.texts(), language + languageSuffix);
            kitTables_[id(language, name)] = readTable(joinPath(folder, file));
        }
    }
}

const std::vector<std::string>& TextTables::names() {
    static const std::vector<std::string> names = {"installer", "Localizable"};
    return names;
}

const TextTable& TextTables::table(const std::string& language, const std::string& name) const {
    return tables_.at(id(language, name));
}

const std::string* TextTables::kitText(const std::string& language, const std::string& name,
                                       const std::string& key) const {
    const auto found = kitTables_.find(id(language, name));
    return found == kitTables_.end() ? nullptr : found->second.text(key);
}

const std::map<std::string, std::string>& TextTables::wanted(const std::string& name) const {
    static const std::map<std::string, std::string> none;
    const TextTable& english = kitTables_.at(id("en", name));
    return english.read ? english.read->entries : none;
}

}  // namespace installer

#include "tools/mkinstaller/sources/SampleNames.h"

#include <algorithm>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/StringsTable.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

std::string textOf(const Kit& kit, const std::string& table, const std::string& key) {
    const auto bytes = contentsOf(joinPath(kit.texts(), "en.lproj/" + table + ".strings"));
    if (!bytes) return {};
    const StringsTable read = parseStringsTable(*bytes);
    const auto found = read.entries.find(key);
    return found == read.entries.end() ? std::string() : found->second;
}

}  // namespace

SampleNames SampleNames::of(const Kit& kit) {
    const auto address = split(textOf(kit, "Localizable", "register_url"), '/');
    std::string host = address.size() > 2 ? address[2] : std::string();
    if (host.starts_with("www.")) host.erase(0, 4);
    return {.company = textOf(kit, "installer", "company_name"),
            .product = textOf(kit, "installer", "product_name"),
            .identifier = textOf(kit, "installer", "app_plist"),
            .website = host};
}

std::string SampleNames::wordOf(const std::string& identifier) {
    return split(identifier, '.').back();
}

std::string replacingEach(std::string_view text,
                          std::vector<std::pair<std::string, std::string>> replacements) {
    std::erase_if(replacements, [](const auto& pair) { return pair.first.empty(); });
    std::ranges::stable_sort(replacements, std::ranges::greater{},
                             [](const auto& pair) { return pair.first.size(); });
    std::string result;
    while (!text.empty()) {
        const auto fits = std::ranges::find_if(
            replacements, [&](const auto& pair) { return text.starts_with(pair.first); });
        if (fits == replacements.end()) {
            result += text.front();
            text.remove_prefix(1);
        } else {
            result += fits->second;
            text.remove_prefix(fits->first.size());
        }
    }
    return result;
}

}  // namespace installer

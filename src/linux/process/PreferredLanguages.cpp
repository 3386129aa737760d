#include "linux/process/PreferredLanguages.h"

#include <algorithm>
#include <string_view>

#include "foundation/text/Text.h"

namespace installer {

namespace {

std::string withoutEncoding(std::string_view locale) {
    return std::string(locale.substr(0, locale.find_first_of(".@")));
}

bool isNoLanguage(const std::string& language) {
    return language == "C" || language == "POSIX";
}

void add(std::vector<std::string>& languages, std::string language) {
    if (language.empty() || isNoLanguage(language)) return;
    if (std::find(languages.begin(), languages.end(), language) == languages.end())
        languages.push_back(std::move(language));
}

const std::string* find(const std::vector<std::string>& available, std::string language) {
    std::replace(language.begin(), language.end(), '_', '-');
    const auto found = std::find_if(available.begin(), available.end(), [&](std::string name) {
        std::replace(name.begin(), name.end(), '_', '-');
        return equalIgnoringCase(name, language);
    });
    return found == available.end() ? nullptr : &*found;
}

}  // namespace

std::vector<std::string> preferredLanguages(const Environment& environment) {
    std::vector<std::string> languages;
    for (const auto& entry : split(environment("LANGUAGE").value_or(""), ':'))
        add(languages, withoutEncoding(entry));
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string language = withoutEncoding(environment(variable).value_or(""));
        if (isNoLanguage(language)) break;
        add(languages, language);
    }
    return languages;
}

std::string chosenLanguage(const std::vector<std::string>& preferred,
                           std::vector<std::string> available) {
    std::sort(available.begin(), available.end());
    for (const auto& language : preferred) {
        if (const auto* name = find(available, language)) return *name;
        const std::string alone = language.substr(0, language.find_first_of("_-"));
        if (const auto* name = find(available, alone)) return *name;
    }
    if (const auto* name = find(available, fallbackLanguage)) return *name;
    return available.empty() ? "" : available.front();
}

}  // namespace installer

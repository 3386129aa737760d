// The user's languages from the environment, and the choice among those of a bundle. Input:
// LANGUAGE, LC_ALL, LC_MESSAGES, LANG, the bundle's languages with a comma after each.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "foundation/text/Text.h"
#include "linux/process/PreferredLanguages.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using namespace installer;
using fuzz::require;

std::optional<std::string> variable(const std::vector<std::string>& parts,
                                    const std::string& name) {
    const std::vector<std::string> names = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};
    const auto place = static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
    // An environment cannot hold a NUL.
    std::string value = parts.at(place).substr(0, parts.at(place).find('\0'));
    return value.empty() ? std::nullopt : std::optional(std::move(value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> parts = fuzz::parts(fuzz::textOf(data, size), 5);
    const std::vector<std::string> preferred =
        preferredLanguages([&parts](const std::string& name) { return variable(parts, name); });
    for (const std::string& language : preferred) {
        require(!language.empty() && language != "C" && language != "POSIX");
        require(language.find_first_of(".@") == std::string::npos);
        require(std::ranges::count(preferred, language) == 1);
    }
    std::vector<std::string> available = split(parts[4], ',');
    std::erase(available, "");
    const std::string chosen = chosenLanguage(preferred, available);
    // The name becomes part of a path: it is one that was found on the disk, whatever was asked
    // for.
    require(available.empty() ? chosen.empty()
                              : std::ranges::find(available, chosen) != available.end());
    const bool isThere =
        !preferred.empty() && std::ranges::find(available, preferred[0]) != available.end();
    if (isThere) {
        require(equalIgnoringCase(replacingAll(chosen, "_", "-"),
                                  replacingAll(preferred[0], "_", "-")));
    }
    return 0;
}

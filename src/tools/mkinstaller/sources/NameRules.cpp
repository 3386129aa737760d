#include "tools/mkinstaller/sources/NameRules.h"

#include <algorithm>

#include "foundation/text/Text.h"
#include "foundation/values/Utf8.h"

namespace installer {

std::string bundleName(std::string_view company, std::string_view product) {
    return std::string(company) + " " + std::string(product) + std::string(bundleSuffix);
}

std::size_t longestProductName(std::string_view company) {
    const std::size_t inBundle = company.size() + 1 + bundleSuffix.size();
    const std::size_t around = std::max(logSuffix.size(), inBundle);
    return longestFileName - std::min(around, longestFileName);
}

bool hasControlCharacters(std::string_view text) {
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        const char32_t code = character.codePoint.value_or(U' ');
        const bool isSeparator = code == 0x2028 || code == 0x2029;
        if (code < 0x20 || (code >= 0x7F && code < 0xA0) || isSeparator) return true;
        place += character.length;
    }
    return false;
}

bool isFolderName(std::string_view name) {
    return !name.empty() && trimmed(name) == name && !name.starts_with('.') &&
           !contains(name, "/") && !hasControlCharacters(name) && isUtf8(name);
}

}  // namespace installer

#include "foundation/rtf/FontTable.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "foundation/rtf/codepages/CodePages.h"
#include "foundation/text/Text.h"
#include "foundation/values/Utf8.h"

namespace installer::rtf {

namespace {

/// Every run of characters keeps its font's name, so a long one would cost its length each time.
constexpr std::size_t longestName = 128;

/// Editors count fonts in 16 bits. A limit keeps every look-up short.
constexpr std::int32_t largestNumber = 0x7FFF;

/// What follows the hyphen in the names of a family's members. Their weight and slant need no
/// reading: the text says them too.
bool isMemberOfFamily(std::string_view suffix) {
    constexpr auto suffixes = std::to_array<std::string_view>(
        {"Bold", "BoldItalic", "BoldItalicMT", "BoldMT", "BoldOblique", "Heavy", "Italic",
         "ItalicMT", "Light", "LightItalic", "Medium", "Oblique", "Regular", "Roman", "Semibold"});
    return std::ranges::find(suffixes, suffix) != suffixes.end();
}

/// Word processors list a family once more for each script, under names that windows do not know.
std::string withoutScript(std::string family) {
    constexpr auto scripts = std::to_array<std::string_view>(
        {" CE", " Cyr", " Greek", " Tur", " Baltic", " (Hebrew)", " (Arabic)", " (Vietnamese)"});
    const auto* const script = std::ranges::find_if(
        scripts, [&family](std::string_view ending) { return family.ends_with(ending); });
    if (script != scripts.end()) family.resize(family.size() - script->size());
    return family;
}

}  // namespace

void FontTable::begin(std::int32_t number) {
    end();
    if (number >= 0 && number <= largestNumber) number_ = number;
}

void FontTable::setCodePage(std::optional<int> codePage) {
    entry_.codePage = codePage;
}

void FontTable::addToName(char32_t character) {
    if (number_ && entry_.family.size() <= longestName) appendUtf8(entry_.family, character);
}

void FontTable::end() {
    if (number_) {
        // The characters of such a font are mapped to Unicode, and the font itself has no glyphs
        // for them.
        const bool isSignFont = entry_.codePage == symbolCodePage;
        entry_.family = isSignFont ? "" : fontFamily(entry_.family);
        fonts_[*number_] = std::move(entry_);
    }
    number_.reset();
    entry_ = {};
}

const FontTable::Font* FontTable::find(std::int32_t number) const {
    const auto found = fonts_.find(number);
    return found == fonts_.end() ? nullptr : &found->second;
}

std::string fontFamily(const std::string& name) {
    std::string family = trimmed(name);
    if (family.size() > longestName || family.starts_with('.')) return "";
    // The mark of fonts that are turned for vertical text.
    if (family.starts_with('@')) family.erase(0, 1);
    const std::size_t hyphen = family.rfind('-');
    if (hyphen != std::string::npos && isMemberOfFamily(family.substr(hyphen + 1))) {
        family.resize(hyphen);
    }
    return withoutScript(std::move(family));
}

}  // namespace installer::rtf

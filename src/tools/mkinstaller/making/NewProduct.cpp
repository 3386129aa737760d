#include "tools/mkinstaller/making/NewProduct.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "foundation/values/Utf8.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/Identifiers.h"
#include "tools/mkinstaller/sources/NameRules.h"
#include "tools/mkinstaller/sources/Product.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> kitLanguages(const Kit& kit) {
    std::vector<std::string> languages;
    for (const std::string& name : sortedNames(kit.texts())) {
        if (name.ends_with(languageSuffix)) languages.push_back(stemOf(name));
    }
    return languages;
}

std::string escapedForTable(std::string_view text) {
    return replacingAll(replacingAll(text, "\\", "\\\\"), "\"", "\\\"");
}

void appendRtfUnit(std::string& rtf, std::uint32_t unit) {
    // RTF writes the unit as a signed number of 16 bits, and "?" for readers that know no Unicode.
    const auto number = static_cast<std::int32_t>(unit) - (unit > 0x7FFF ? 0x10000 : 0);
    rtf += "\\u" + std::to_string(number) + "?";
}

std::string escapedForRtf(std::string_view text) {
    std::string rtf;
    for (std::size_t place = 0; place < text.size();) {
        const Utf8Character character = utf8CharacterAt(text, place);
        const char32_t code = character.codePoint.value_or(U'?');
        if (code == U'\\' || code == U'{' || code == U'}') rtf += '\\';
        if (code < 0x80) {
            rtf += static_cast<char>(code);
        } else if (code < 0x10000) {
            appendRtfUnit(rtf, code);
        } else {
            appendRtfUnit(rtf, 0xD800 + ((code - 0x10000) >> 10));
            appendRtfUnit(rtf, 0xDC00 + ((code - 0x10000) & 0x3FF));
        }
        place += character.length;
    }
    return rtf;
}

std::string inFormOf(const std::string& file, std::string_view text) {
    const std::string suffix = suffixOf(file);
    if (suffix == "strings") return escapedForTable(text);
    if (suffix == "rtf") return escapedForRtf(text);
    return std::string(text);
}

std::error_code writeLanguage(const std::string& folder, const std::string& language,
                              const NewProductNames& names, const Kit& kit) {
    const SampleNames sample = SampleNames::of(kit);
    const std::string from = joinPath(kit.texts(), language + languageSuffix);
    const std::string to = joinPath(folder, language + languageSuffix);
    for (const std::string& file : sortedNames(from)) {
        const auto text = contentsOf(joinPath(from, file));
        if (!text) return std::make_error_code(std::errc::io_error);
        const std::string written = replacingEach(
            *text,
            {{sample.company, inFormOf(file, names.company)},
             {sample.product, inFormOf(file, names.product)},
             {sample.identifier, names.identifier},
             {sample.website, names.website},
             {SampleNames::wordOf(sample.identifier), SampleNames::wordOf(names.identifier)}});
        if (const auto error = writeFile(joinPath(to, file), written)) return error;
    }
    return {};
}

std::string informationOf(const NewProductNames& names) {
    return starterPropertyList(
        {{"CFBundleIdentifier", names.identifier},
         {"CFBundleName", names.company + " " + names.product + " Installer"},
         {"CFBundleExecutable", "Installer"},
         {"CFBundlePackageType", "APPL"},
         {"CFBundleShortVersionString", "1.0.0"},
         {"CFBundleVersion", "1.0.0"},
         {"CFBundleDevelopmentRegion", "en"},
         {"CFBundleInfoDictionaryVersion", "6.0"}});
}

std::error_code writeAll(const std::string& folder, const NewProductNames& names, const Kit& kit) {
    for (const std::string& language : names.languages) {
        if (const auto error = writeLanguage(folder, language, names, kit)) return error;
    }
    if (const auto error = writeFile(joinPath(folder, "Info.plist"), informationOf(names))) {
        return error;
    }
    const auto icon = contentsOf(joinPath(kit.resources(), "AppIcon.png"));
    if (!icon) return std::make_error_code(std::errc::io_error);
    if (const auto error = writeFile(joinPath(folder, "AppIcon.png"), *icon)) return error;
    return writeStarterPayload(folder, names);
}

}  // namespace

std::optional<std::string> problemOf(const NewProductNames& names, const Kit& kit) {
    for (const auto& [what, name] :
         {std::pair("company", names.company), std::pair("product", names.product)}) {
        if (!isFolderName(name)) {
            return "the " + std::string(what) + " cannot name a folder: \"" + name +
                   "\" (no slash, no line end, no dot at the beginning, no blank at either end)";
        }
    }
    if (names.company.size() > longestFileName ||
        names.product.size() > longestProductName(names.company)) {
        return "the company and the product are too long for the name of a file";
    }
    if (!isReverseDomain(names.identifier)) {
        return "the identifier is not reverse-domain, as com.example.filters is: \"" +
               names.identifier + "\"";
    }
    if (const auto owner = knownOwnerOf(names.identifier)) {
        return "the identifier \"" + names.identifier + "\" is one of " + *owner;
    }
    const auto known = kitLanguages(kit);
    const auto unknown = std::ranges::find_if(names.languages, [&](const std::string& language) {
        return std::ranges::find(known, language) == known.end();
    });
    if (unknown == names.languages.end()) return std::nullopt;
    std::string text = "there are no texts in \"" + *unknown + "\"; there are texts in";
    for (const std::string& name : known) text.append(" ").append(name);
    return text;
}

std::optional<std::string> makeProduct(const std::string& folder, const NewProductNames& names,
                                       const Kit& kit) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(folder, error)) && !fs::is_empty(folder, error)) {
        return folder + " exists and is not empty";
    }
    NewProductNames whole = names;
    if (whole.website.empty()) whole.website = domainOf(whole.identifier);
    if (whole.languages.empty()) whole.languages = kitLanguages(kit);
    if (const auto failure = writeAll(folder, whole, kit)) {
        return folder + " cannot be written: " + failure.message();
    }
    return std::nullopt;
}

}  // namespace installer

#include "tools/mkinstaller/lint/CheckInformation.h"

#include <algorithm>
#include <string>

#include "foundation/text/Text.h"
#include "tools/mkinstaller/lint/basis/PropertyListFile.h"
#include "tools/mkinstaller/sources/Identifiers.h"

namespace installer {

namespace {

constexpr const char* executable = "Installer";

bool isVersion(const std::string& text) {
    const auto parts = split(text, '.');
    return std::ranges::all_of(parts, [](const std::string& part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string::npos;
    });
}

}  // namespace

void checkInformation(const LintContext& context) {
    const std::string& file = context.product.information;
    const auto tell = [&](const char* code, std::size_t line, std::string problem,
                          std::string repair) {
        context.findings.add(code, {file, line}, std::move(problem), std::move(repair));
    };
    const PropertyListFile list(file);
    if (!list.isReadable()) {
        tell("M004", list.lineOfError(), list.problem(),
             "write a property list, as \"mkinstaller new\" does");
        return;
    }
    if (const auto name = list.text("CFBundleExecutable"); name && *name != executable) {
        tell("M004", list.lineOf("CFBundleExecutable"),
             "CFBundleExecutable is \"" + *name + "\", but the program is called Installer",
             "write Installer");
    }
    for (const char* key : {"CFBundleShortVersionString", "CFBundleVersion"}) {
        const auto version = list.text(key);
        if (version && isVersion(*version)) continue;
        tell("M005", list.lineOf(key),
             version ? std::string(key) + " is no version: \"" + *version + "\""
                     : std::string(key) + " is missing",
             "write numbers with dots between them, such as 2.0.1");
    }
    const auto identifier = list.text("CFBundleIdentifier");
    if (!identifier || !isReverseDomain(*identifier)) {
        tell("M006", list.lineOf("CFBundleIdentifier"),
             identifier ? "CFBundleIdentifier is not reverse-domain: \"" + *identifier + "\""
                        : "CFBundleIdentifier is missing",
             "write one such as com.example.product");
    } else if (const auto owner = knownOwnerOf(*identifier)) {
        tell("M006", list.lineOf("CFBundleIdentifier"),
             "the identifier \"" + *identifier + "\" is one of " + *owner,
             "write one that begins with your own domain");
    }
}

}  // namespace installer

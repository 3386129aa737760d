#include "tools/mkinstaller/lint/CheckStructure.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/lint/CheckInformation.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

constexpr std::string_view alphanumeric =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

/// "de", "pt-BR", "zh-Hans": a language of two or three letters, then parts behind "-" or "_".
bool isLanguage(std::string name) {
    std::ranges::replace(name, '_', '-');
    const auto parts = split(name, '-');
    return parts.front().size() <= 3 && std::ranges::all_of(parts, [](const std::string& part) {
               return part.size() >= 2 && part.size() <= 8 &&
                      part.find_first_not_of(alphanumeric) == std::string::npos;
           });
}

/// Names that differ in letter case or in the spelling of "licence" are meant to be the same.
std::string comparable(std::string_view name) {
    return replacingAll(lowerCased(stemOf(name)), "licence", "license");
}

class StructureCheck {
  public:
    StructureCheck(const LintContext& context, const std::set<std::string>& pictures)
        : context_(context), product_(context.product), known_(pictures) {
        for (const std::string& folder :
             {context.kit.resources(), joinPath(context.kit.texts(), "en.lproj")}) {
            for (const std::string& name : sortedNames(folder)) known_.insert(name);
        }
    }

    void check() {
        checkLanguages();
        for (const std::string& name : sortedNames(product_.resources)) checkEntry(name);
        for (const std::string& language : product_.languages()) {
            const std::string folder = product_.languageFolder(language);
            for (const std::string& name : sortedNames(folder)) checkFile(folder, name);
        }
        checkSharedSupport();
        if (product_.form == Product::Form::bundle) checkProgram();
    }

  private:
    void tell(std::string_view code, const std::string& file, std::string problem,
              std::string repair) {
        context_.findings.add(code, {file}, std::move(problem), std::move(repair));
    }

    void checkLanguages() {
        const auto languages = product_.languages();
        if (languages.empty()) {
            tell("M001", product_.root, "there is no language folder such as en.lproj",
                 "begin with \"mkinstaller new\"");
        } else if (std::ranges::find(languages, "en") == languages.end()) {
            tell("M003", product_.root,
                 "there is no en.lproj: whoever speaks none of the product's languages gets " +
                     languages.front(),
                 "add English texts");
        }
        for (const std::string& language : languages) {
            if (isLanguage(language)) continue;
            tell("M002", product_.languageFolder(language),
                 "\"" + language + "\" is no language, so nobody gets these texts",
                 "name the folder as in de.lproj or pt-BR.lproj");
        }
    }

    /// Of the folder that a maker works in, hidden files and notes are not part of the product.
    [[nodiscard]] bool isOutsideProduct(const std::string& name) const {
        if (product_.form == Product::Form::bundle) return false;
        return name.starts_with('.') || lowerCased(stemOf(name)) == "readme" ||
               name == "Info.plist" || name == "SharedSupport";
    }

    void checkEntry(const std::string& name) {
        if (name == "files" || isOutsideProduct(name)) return;
        const std::string path = joinPath(product_.resources, name);
        const bool hasLanguageSuffix = equalIgnoringCase(suffixOf(name), "lproj");
        if (hasLanguageSuffix && !(name.ends_with(languageSuffix) && isFolder(path))) {
            tell("M002", path, "this is no folder of a language",
                 "make it a folder whose name ends in .lproj");
        } else if (!hasLanguageSuffix) {
            checkFile(product_.resources, name);
        }
    }

    void checkFile(const std::string& folder, const std::string& name) {
        if (known_.contains(name)) return;
        const std::string path = joinPath(folder, name);
        const auto meant = std::ranges::find_if(known_, [&](const std::string& known) {
            return comparable(known) == comparable(name) && suffixOf(name) != "svg";
        });
        if (meant != known_.end()) {
            tell("M043", path, "the installer never looks for \"" + name + "\"",
                 "name it " + *meant);
        } else if (suffixOf(name) != "svg") {
            tell("M007", path, "the installer never looks for \"" + name + "\"",
                 "remove it, or correct its name");
        }
    }

    void checkSharedSupport() {
        for (const std::string& name : sortedNames(product_.sharedSupport)) {
            if (name == "PlugIn" || name == "AutoLayer" || name == "Standalone") continue;
            if (name.starts_with('.')) continue;
            tell("M093", joinPath(product_.sharedSupport, name),
                 "the installer never looks into \"" + name + "\"",
                 "the folders are PlugIn, AutoLayer and Standalone");
        }
    }

    /// A finished bundle has the whole program, or it does not start.
    void checkProgram() {
        for (const std::string folder : {"MacOS", "Frameworks"}) {
            const bool isStarted = folder == "MacOS";
            const std::string kit = joinPath(context_.kit.contents(), folder);
            const std::string own = joinPath(joinPath(product_.root, "Contents"), folder);
            for (const std::string& name : sortedNames(kit)) {
                const std::string path = joinPath(own, name);
                const int right = isStarted ? X_OK : R_OK;
                if (isFile(path) && ::access(path.c_str(), right) == 0) continue;
                tell("M008", path,
                     isFile(path) ? std::string("this part of the program is not ") +
                                        (isStarted ? "executable" : "readable")
                                  : "this part of the program is missing",
                     isFile(path) ? "set its mode to 0755" : "assemble the bundle anew");
            }
        }
    }

    const LintContext& context_;
    const Product& product_;
    std::set<std::string> known_;
};

}  // namespace

void checkStructure(const LintContext& context, const std::set<std::string>& picturesOfLayouts) {
    StructureCheck(context, picturesOfLayouts).check();
}

}  // namespace installer

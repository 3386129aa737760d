#include "tools/mkinstaller/lint/payload/CheckPackage.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <unistd.h>

#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/lint/basis/PropertyListFile.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/Identifiers.h"

namespace installer {

namespace {

/// Packages that are no bundles: they have no property list at Contents/Info.plist.
constexpr std::array<std::string_view, 4> plainPackages = {"lrplugin", "pkg", "mpkg", "rtfd"};
/// Packages that are of no use without a program.
constexpr std::array<std::string_view, 6> programs = {"app",      "plugin",      "component",
                                                      "prefPane", "qlgenerator", "mdimporter"};

template <std::size_t size>
bool isOneOf(const std::array<std::string_view, size>& suffixes, const std::string& package) {
    return std::ranges::find(suffixes, suffixOf(package)) != suffixes.end();
}

class PackageCheck {
  public:
    PackageCheck(const LintContext& context, const std::string& package)
        : context_(context),
          package_(package),
          information_(joinPath(package, "Contents/Info.plist")),
          list_(information_) {}

    void check() {
        if (!list_.isReadable()) {
            tell("M082", list_.lineOfError(), list_.problem(),
                 "write a property list at Contents/Info.plist");
            return;
        }
        checkExecutable();
        checkIdentifier();
    }

  private:
    void tell(std::string_view code, std::size_t line, std::string problem, std::string repair) {
        context_.findings.add(code, {information_, line}, std::move(problem), std::move(repair));
    }

    void checkExecutable() {
        const auto name = list_.text("CFBundleExecutable");
        if (!name) {
            if (isOneOf(programs, package_)) {
                tell("M080", list_.lineOf("CFBundleExecutable"), "CFBundleExecutable is missing",
                     "name the file in Contents/MacOS that is the program");
            }
            return;
        }
        const std::string file = joinPath(joinPath(package_, "Contents/MacOS"), *name);
        if (!isFile(file)) {
            tell("M080", list_.lineOf("CFBundleExecutable"),
                 "CFBundleExecutable names \"" + *name + "\", which is not in Contents/MacOS",
                 "correct the name, or put the file there");
        } else if (::access(file.c_str(), X_OK) != 0) {
            context_.findings.add("M081", {file}, "the package's program is not executable",
                                  "set its mode to 0755; archives without modes lose it");
        }
    }

    void checkIdentifier() {
        const auto identifier = list_.text("CFBundleIdentifier");
        const std::size_t line = list_.lineOf("CFBundleIdentifier");
        if (!identifier || !isReverseDomain(*identifier)) {
            tell("M083", line,
                 identifier ? "CFBundleIdentifier is not reverse-domain: \"" + *identifier + "\""
                            : "CFBundleIdentifier is missing",
                 "write one such as com.example.product.plugin");
        } else if (const auto owner = knownOwnerOf(*identifier)) {
            tell("M084", line, "the identifier \"" + *identifier + "\" is one of " + *owner,
                 "write one that begins with your own domain");
        }
    }

    const LintContext& context_;
    const std::string& package_;
    std::string information_;
    PropertyListFile list_;
};

}  // namespace

void checkPackage(const LintContext& context, const std::string& package) {
    if (!isOneOf(plainPackages, package)) PackageCheck(context, package).check();
}

bool isPackageExecutable(const std::string& file) {
    const std::string programsFolder = parentPath(file);
    const std::string contents = parentPath(programsFolder);
    if (lastPathComponent(programsFolder) != "MacOS") return false;
    const PropertyListFile list(joinPath(contents, "Info.plist"));
    return list.text("CFBundleExecutable") == lastPathComponent(file);
}

}  // namespace installer

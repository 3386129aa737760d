#include "tools/mkinstaller/lint/payload/CheckEntries.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include "foundation/text/Text.h"
#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/lint/payload/CheckPackage.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/NameRules.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

/// Encrypted home folders take names of so many bytes, other file systems longer ones.
constexpr std::size_t longestPortableName = 143;
/// What a path on the customer's disk may have; Linux takes 4095, other systems 1023.
constexpr std::size_t longestPath = 1023;

constexpr std::array<std::string_view, 5> debris = {".DS_Store", "Thumbs.db", "desktop.ini",
                                                    "__MACOSX", ".git"};

/// Programs say what they are with their first bytes.
bool isProgram(const std::string& path) {
    const auto start = startOf(path, 4);
    if (!start) return false;
    for (const std::string_view magic :
         {"#!", "\177ELF", "\xCF\xFA\xED\xFE", "\xCE\xFA\xED\xFE", "\xCA\xFE\xBA\xBE"}) {
        if (start->starts_with(magic)) return true;
    }
    return false;
}

class EntryCheck {
  public:
    EntryCheck(const LintContext& context, std::string top)
        : context_(context), top_(std::move(top)) {}

    void checkFolder(const std::string& folder) {
        std::map<std::string, std::string> seen;
        for (const std::string& name : sortedNames(folder)) {
            const std::string path = joinPath(folder, name);
            const auto [other, isFirst] = seen.emplace(lowerCased(name), name);
            if (!isFirst) {
                tell("M085", path,
                     "\"" + name + "\" and \"" + other->second +
                         "\" are one file on disks that do not tell letter cases apart",
                     "rename one of them");
            }
            if (!checkName(path, name)) continue;
            checkEntry(path, name);
        }
    }

  private:
    void tell(std::string_view code, const std::string& path, std::string problem,
              std::string repair) {
        context_.findings.add(code, {path}, std::move(problem), std::move(repair));
    }

    /// False for what is not part of any product, which needs no more checks.
    bool checkName(const std::string& path, const std::string& name) {
        if (isDebris(name)) {
            tell("M095", path, "\"" + name + "\" was left here by another program", "remove it");
            return false;
        }
        if (hasControlCharacters(name) || !isUtf8(name)) {
            tell("M086", path,
                 "the name holds a line end or another control character, or is not UTF-8",
                 "rename it; the installer log has one name on each line");
        }
        if (name.size() > longestPortableName) {
            tell("M087", path,
                 "the name has " + std::to_string(name.size()) +
                     " bytes; encrypted home folders take " + std::to_string(longestPortableName),
                 "shorten it");
        } else if (path.size() - top_.size() > longestPath) {
            tell("M087", path, "the path has more than 1023 bytes", "shorten it");
        }
        return true;
    }

    void checkEntry(const std::string& path, const std::string& name) {
        struct stat status{};
        if (::lstat(path.c_str(), &status) != 0) return;
        if (S_ISLNK(status.st_mode)) return checkLink(path);
        if (S_ISDIR(status.st_mode)) {
            checkMode(path, status.st_mode);
            if (isPackageName(name)) checkPackage(context_, path);
            return checkFolder(path);
        }
        if (!S_ISREG(status.st_mode)) {
            tell("M075", path, "a FIFO, a socket or a device cannot be installed", "remove it");
            return;
        }
        checkMode(path, status.st_mode);
        const bool isExecutable = (status.st_mode & S_IXUSR) != 0;
        if (!isExecutable && !isPackageExecutable(path) && isProgram(path)) {
            tell("M088", path, "this is a program, and it is not executable",
                 "set its mode to 0755; archives without modes lose it");
        }
    }

    void checkMode(const std::string& path, mode_t mode) {
        const mode_t needed = S_ISDIR(mode) ? S_IRUSR | S_IXUSR : S_IRUSR;
        if ((mode & needed) != needed) {
            tell("M091", path, "its owner may not read it, so it cannot be copied",
                 "give it a mode such as 0755");
        }
        if ((mode & (S_ISUID | S_ISGID)) != 0) {
            tell("M092", path,
                 "set-user-ID and set-group-ID bits are taken away when it is installed",
                 "remove them");
        }
    }

    void checkLink(const std::string& path) {
        std::error_code error;
        const fs::path target = fs::read_symlink(path, error);
        if (error) return;
        if (target.is_absolute()) {
            tell("M076", path,
                 "the link leads to " + target.string() + ", which is a place on this machine",
                 "make it relative");
            return;
        }
        const std::string resolved =
            (fs::absolute(path).parent_path() / target).lexically_normal().string();
        const std::string top = fs::absolute(top_).lexically_normal().string();
        const bool leavesTop = !(resolved + "/").starts_with(top + "/");
        if (leavesTop || !fs::exists(fs::path(resolved), error)) {
            tell("M077", path,
                 leavesTop ? "the link leads out of the product, to " + target.string()
                           : "the link leads to " + target.string() + ", which is not there",
                 "correct it, or put the file itself there");
        }
    }

    const LintContext& context_;
    std::string top_;
};

}  // namespace

bool isDebris(std::string_view name) {
    return name.starts_with("._") || std::ranges::find(debris, name) != debris.end();
}

void checkEntries(const LintContext& context) {
    for (const std::string& folder : {context.product.payload(), context.product.sharedSupport}) {
        EntryCheck(context, folder).checkFolder(folder);
    }
}

}  // namespace installer

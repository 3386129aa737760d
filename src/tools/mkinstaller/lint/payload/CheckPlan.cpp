#include "tools/mkinstaller/lint/payload/CheckPlan.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"
#include "hosts/HostModel.h"
#include "install/plan/InstallPlan.h"
#include "tools/mkinstaller/lint/payload/CheckEntries.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

constexpr std::array<std::string_view, 4> payloadFolders = {"HD", "LIGHTROOM", "PHOTOSHOP",
                                                            "PHOTOSHOP_PLUGINS"};

/// Words in the name of a folder that a user is meant to put files into.
constexpr std::array<std::string_view, 6> wordsOfUsers = {"custom",   "my",   "own",
                                                          "personal", "user", "users"};

bool isBelow(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

bool isForUsers(const std::string& name) {
    const auto words = split(lowerCased(name), ' ');
    return std::ranges::any_of(words, [](const std::string& word) {
        return std::ranges::find(wordsOfUsers, word) != wordsOfUsers.end();
    });
}

class PlanCheck {
  public:
    PlanCheck(const LintContext& context, Platform& platform)
        : context_(context),
          payload_(context.product.payload()),
          plan_(makeInstallPlan(platform, everyHost(platform))) {}

    void check() {
        checkFolders();
        checkCompanies();
        for (const LeftOutEntry& entry : plan_.leftOut) checkLeftOut(entry);
        for (const PlannedItem& item : plan_.items) checkItem(item);
        for (const PlannedItem& item : plan_.refused) checkRefused(item);
        if (plan_.items.empty()) {
            tell("M090", payload_, "no item in it is installed anywhere",
                 "put the product's files there");
        }
    }

  private:
    /// One host of each kind that the payload can have items for.
    static std::vector<HostModel> everyHost(Platform& platform) {
        return {
            HostModel(PhotoshopHostModel::initWithHostName(platform, "Adobe Photoshop CC 2019")),
            HostModel(LightRoomHostModel(platform, "Lightroom"))};
    }

    void tell(std::string_view code, const std::string& path, std::string problem,
              std::string repair) {
        context_.findings.add(code, {path}, std::move(problem), std::move(repair));
    }

    /// The path as the maker named it; the plan has absolute ones.
    [[nodiscard]] std::string named(const std::string& path) const {
        return payload_ + path.substr(plan_.payloadFolder.size());
    }

    void checkFolders() {
        for (const std::string& name : sortedNames(payload_)) {
            if (name.starts_with('.')) continue;  // left out as hidden
            const std::string path = joinPath(payload_, name);
            const auto meant = std::ranges::find_if(payloadFolders, [&](std::string_view folder) {
                return equalIgnoringCase(folder, name);
            });
            if (meant == payloadFolders.end()) {
                tell("M070", path, "nothing is installed from \"" + name + "\"",
                     "the folders are HD, PHOTOSHOP, PHOTOSHOP_PLUGINS and LIGHTROOM");
            } else if (*meant != name) {
                tell("M071", path, "nothing is installed from \"" + name + "\"",
                     "call it " + std::string(*meant));
            }
        }
    }

    /// The installer's own rule: what it would refuse is told.
    void checkRefused(const PlannedItem& item) {
        const std::string path = named(item.source);
        const std::string mirror = joinPath(payload_, "HD");
        const std::string place = path.starts_with(mirror) ? path.substr(mirror.size()) : path;
        tell("M089", path, place + " lies in a folder of the system, so it is never installed",
             "install into /Applications or /Library");
    }

    /// Folders beside the company's own, out of which something is left out.
    void checkCompanies() {
        const std::string support = joinPath(payload_, "HD/Library/Application Support");
        const std::string company = context_.product.name("company_name");
        if (company.empty()) return;  // told as a missing name
        for (const std::string& name : sortedNames(support)) {
            const std::string folder = joinPath(support, name);
            if (name == company || isPackageName(name) || !isFolder(folder)) continue;
            const bool losesFiles = std::ranges::any_of(plan_.leftOut, [&](const auto& entry) {
                return entry.reason == LeftOutReason::outsideProducts &&
                       isBelow(named(entry.path), folder);
            });
            if (!losesFiles) continue;
            otherCompanies_.insert(folder);
            tell("M094", folder,
                 std::string("files in \"")
                     .append(name)
                     .append("\" are left out, since the company is called \"")
                     .append(company)
                     .append("\""),
                 "call the folder by the company's name");
        }
    }

    void checkLeftOut(const LeftOutEntry& entry) {
        const std::string path = named(entry.path);
        std::string reason = "it is never installed: " + std::string(description(entry.reason));
        if (reason.ends_with('.')) reason.pop_back();
        switch (entry.reason) {
            case LeftOutReason::outsideProducts: {
                const bool isTold = std::ranges::any_of(
                    otherCompanies_, [&](const auto& folder) { return isBelow(path, folder); });
                if (isTold) return;
                tell("M072", path, reason, "put it into a package or a folder of the product");
                return;
            }
            case LeftOutReason::hidden:
                if (isDebris(lastPathComponent(path))) return;  // told as what it is
                tell("M073", path, reason, "rename it, or remove it");
                return;
            case LeftOutReason::linkOrSpecialFile:
                if (entryType(path) == EntryType::link) {
                    tell("M074", path, reason, "put the file itself there");
                }
                return;
            case LeftOutReason::unknownEntry:
            case LeftOutReason::unreadableFolder:
                return;  // told by the folder's name and by the entry's mode
        }
    }

    void checkItem(const PlannedItem& item) {
        const std::string path = named(item.source);
        const std::string name = lastPathComponent(path);
        if (item.rule == InstallRule::productFolder && isFolder(path) && isForUsers(name)) {
            tell("M078", path,
                 "\"" + name + "\" is replaced as a whole, with what users have put into it",
                 "keep users' files in a folder that is not installed");
        }
        if (item.rule != InstallRule::mirrorPackage) return;
        for (const PlannedItem& other : plan_.mirrorItems()) {
            if (other.rule != InstallRule::productFolder || !isBelow(item.source, other.source)) {
                continue;
            }
            tell("M079", path,
                 "it is installed as a package, and once more with the folder \"" +
                     lastPathComponent(other.source) + "\" around it",
                 "put it directly into the product's folder");
        }
    }

    const LintContext& context_;
    std::string payload_;
    InstallPlan plan_;
    std::set<std::string> otherCompanies_;
};

}  // namespace

void checkPlan(const LintContext& context, Platform& platform) {
    PlanCheck(context, platform).check();
}

}  // namespace installer

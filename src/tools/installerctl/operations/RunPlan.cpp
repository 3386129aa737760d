#include "tools/installerctl/operations/RunPlan.h"

#include <algorithm>
#include <map>
#include <set>

#include <sys/stat.h>
#include <sys/statvfs.h>

#include "foundation/values/Paths.h"
#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "install/after/ExternalEditorList.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"
#include "product/ProductFacts.h"
#include "tools/installerctl/operations/Comparison.h"
#include "tools/installerctl/records/Sha256.h"

namespace installer {

namespace {

constexpr std::uint32_t installedMode = 0775;

std::string applicationOf(const HostModel& host) {
    const auto* photoshop = host.as<PhotoshopHostModel>();
    return photoshop == nullptr ? std::string() : photoshop->appPath();
}

bool isSameHost(const HostModel& left, const HostModel& right) {
    return applicationOf(left) == applicationOf(right) && left.plugInPath() == right.plugInPath();
}

std::string whyNotInstalled(const HostModel& host) {
    const std::string folder = applicationOf(host);
    if (folder.empty()) return "its paths file cannot be read or names no folder";
    if (host.plugInPath().empty()) return "its paths file names no plug-in folder";
    return "there is no application in " + folder;
}

class PlanMaker {
  public:
    PlanMaker(const Session& session, const Receipt* last, const ReadProgress& progress)
        : session_(session), last_(last), progress_(progress) {
        if (last_ == nullptr) return;
        for (const EntryRecord& file : last_->files) known_.add(file);
    }

    RunPlan make() {
        for (const auto& machine : session_.machines()) addUser(*machine);
        plan_.hasPayload = plan_.users.front().plan.hasPayload;
        for (const UserPlan& user : plan_.users) {
            for (const PlannedItem& item : user.plan.refused) {
                plan_.refused.push_back(
                    {item.destination, "lies in a folder of the system or in another user's home"});
            }
        }
        for (const LeftOutEntry& entry : plan_.users.front().plan.leftOut) {
            plan_.leftOut.push_back(
                {belowPayload(entry.path), std::string(description(entry.reason))});
        }
        readPayload();
        addItems();
        for (ReportedItem& item : plan_.items) compare(item);
        addSpace();
        makeReceipt();
        addObsolete();
        return std::move(plan_);
    }

  private:
    void addUser(UserMachine& machine) {
        Platform platform = machine.platform();
        HostDiscovery discovery(platform);
        const std::vector<HostModel> discovered = discovery.discoverHosts();
        UserPlan user{&machine, {}, {}};
        for (const HostModel& host : foundHosts(discovered)) {
            plan_.hosts.push_back(
                {host.hostName(), machine.login(), applicationOf(host), host.plugInPath(), ""});
            plan_.hasHosts = true;
            if (!hasEarlierUser(host)) user.hosts.push_back(host);
        }
        for (const HostModel& host : discovered) {
            if (host.booleanNamed("hostIsInstalled").value_or(false)) continue;
            plan_.hosts.push_back({host.hostName(), machine.login(), applicationOf(host),
                                   host.plugInPath(), whyNotInstalled(host)});
        }
        for (const NotOfferedHost& host : discovery.notOffered()) {
            const bool isListed = host.reason != NotOfferedHost::Reason::elements &&
                                  host.reason != NotOfferedHost::Reason::tooOld;
            // Those have a folder to name, above.
            if (isListed) continue;
            plan_.hosts.push_back({host.name, machine.login(), "", "", description(host.reason)});
        }
        user.plan = makeInstallPlan(platform, user.hosts);
        plan_.users.push_back(std::move(user));
    }

    [[nodiscard]] bool hasEarlierUser(const HostModel& host) const {
        return std::ranges::any_of(plan_.users, [&](const UserPlan& user) {
            return std::ranges::any_of(
                user.hosts, [&](const HostModel& other) { return isSameHost(host, other); });
        });
    }

    [[nodiscard]] std::string belowPayload(const std::string& path) const {
        const std::string& folder = plan_.users.front().plan.payloadFolder;
        return path.starts_with(folder + "/") ? path.substr(folder.size() + 1) : path;
    }

    void readPayload() {
        auto records =
            recordTree(plan_.users.front().plan.payloadFolder, LinkPolicy::follow, progress_);
        Sha256 hash;
        if (records) {
            for (EntryRecord& record : records.value()) {
                hash.add(belowPayload(record.path) + '\0' + record.contents + '\0');
                payload_.add(std::move(record));
            }
        }
        const ProductIdentity& product = session_.product();
        hash.add(product.company + '\0' + product.product + '\0' + product.version);
        plan_.receipt.bundle = hash.finish();
    }

    void addItems() {
        const InstallPlan& first = plan_.users.front().plan;
        for (const PlannedItem& item : first.mirrorItems()) addItem(item, plan_.users.front());
        addEditors();
        for (const UserPlan& user : plan_.users) {
            for (std::size_t host = 0; host < user.plan.hosts.size(); ++host) {
                for (const PlannedItem& item : user.plan.itemsOf(host)) addItem(item, user);
            }
        }
    }

    void addItem(const PlannedItem& item, const UserPlan& user) {
        plan_.expected.replaceTree(item.destination, sourceRecords(item.source));
        const bool isHosts = item.host.has_value();
        plan_.items.push_back(
            {.source = belowPayload(item.source),
             .destination = item.destination,
             .rule = std::string(nameOf(item.rule)),
             .host = isHosts ? user.plan.hosts[*item.host].hostName() : std::string(),
             .user = isHosts ? user.machine->login() : std::string(),
             .action = {},
             .result = {},
             .differences = {},
             .lost = {}});
        addNeed(item.destination, item.bytes);
    }

    std::vector<EntryRecord> sourceRecords(const std::string& source) {
        std::vector<EntryRecord> records;
        for (const auto* alternatives : payload_.tree(source)) {
            records.push_back(alternatives->front());
        }
        // A path through a link of the payload is another path.
        if (records.empty()) {
            auto read = recordTree(source, LinkPolicy::follow, progress_);
            if (read) records = std::move(read).value();
        }
        for (EntryRecord& record : records) {
            if (record.mode) record.mode = installedMode;
        }
        return records;
    }

    /// A run without a window lists no host.
    void addEditors() {
        UserMachine& machine = session_.machine();
        Platform platform = machine.platform();
        const std::string rows = externalEditorRows(platform, {});
        const std::string file = externalEditorsFile(machine);
        if (rows.empty()) return;
        Sha256 hash;
        hash.add(rows);
        const EntryRecord record{.path = file,
                                 .kind = EntryKind::file,
                                 .mode = std::nullopt,
                                 .size = rows.size(),
                                 .contents = hash.finish()};
        plan_.expected.replaceTree(file, {&record, 1});
        plan_.items.push_back({.source = {},
                               .destination = file,
                               .rule = editorsRule,
                               .host = {},
                               .user = {},
                               .action = {},
                               .result = {},
                               .differences = {},
                               .lost = {}});
        addNeed(file, rows.size());
    }

    void compare(ReportedItem& item) {
        const ItemComparison found =
            compareItem(item.destination, plan_.expected, session_.links(), progress_);
        bool differs = !found.changed.empty() || !found.missing.empty();
        for (const PathNote& note : found.changed) item.differences.push_back(note);
        for (const PathNote& note : found.missing) item.differences.push_back(note);
        std::vector<EntryRecord> own;
        for (const EntryRecord& extra : found.extra) {
            // Without a receipt nobody knows whose it is.
            const bool isOurs = known_.at(extra.path) != nullptr;
            if (isOurs || last_ == nullptr) {
                differs = true;
                item.differences.push_back({extra.path, "is not in the payload"});
            }
            if (!isOurs) own.push_back(extra);
        }
        for (const EntryRecord& entry : found.present) {
            const bool isEdited = known_.at(entry.path) != nullptr && !known_.knows(entry) &&
                                  entry.kind != EntryKind::folder && !plan_.expected.knows(entry);
            if (isEdited) item.lost.push_back(entry.path);
        }
        for (std::string& path : topmost(own)) item.lost.push_back(std::move(path));
        item.action = !found.isThere ? "new" : differs ? "replace" : "same";
        if (!found.isThere) item.differences.clear();
    }

    void addNeed(const std::string& destination, std::uint64_t bytes) {
        struct stat status{};
        std::string folder = parentPath(destination);
        while (folder.size() > 1 && ::stat(folder.c_str(), &status) != 0) {
            folder = parentPath(folder);
        }
        if (::stat(folder.c_str(), &status) != 0) return;
        const auto [need, isNew] = needs_.try_emplace(status.st_dev, ReportedSpace{folder, 0, 0});
        need->second.needed += bytes;
        if (folder.size() < need->second.folder.size()) need->second.folder = folder;
    }

    void addSpace() {
        for (auto& [device, space] : needs_) {
            struct statvfs status{};
            if (::statvfs(space.folder.c_str(), &status) == 0) {
                space.available = std::uint64_t{status.f_bavail} * status.f_frsize;
            }
            plan_.space.push_back(space);
        }
    }

    [[nodiscard]] bool isAskedUser(const std::string& login) const {
        return std::ranges::any_of(
            plan_.users, [&](const UserPlan& user) { return user.machine->login() == login; });
    }

    void makeReceipt() {
        Receipt& receipt = plan_.receipt;
        const ProductIdentity& product = session_.product();
        receipt.identifier = product.identifier;
        receipt.company = product.company;
        receipt.product = product.product;
        receipt.version = product.version;
        for (const UserPlan& user : plan_.users) {
            receipt.users.push_back({user.machine->login(), user.machine->home()});
        }
        for (const ReportedHost& host : plan_.hosts) {
            if (host.refused.empty()) {
                receipt.hosts.push_back({host.name, host.user, host.application, host.plugIns});
            }
        }
        for (const ReportedItem& item : plan_.items) {
            receipt.items.push_back(
                {item.destination, item.source, item.rule, item.host, item.user});
        }
        for (const auto& [path, alternatives] : plan_.expected.all()) {
            receipt.files.push_back(alternatives.front());
        }
        if (last_ != nullptr) keepOtherUsers(receipt);
        plan_.receiptDiffers = last_ == nullptr || differsFromLast(receipt);
    }

    /// Several users can have the same host, and an item of it names only one of them.
    [[nodiscard]] bool liesInHostOfOthers(const std::string& path) const {
        return std::ranges::any_of(last_->hosts, [&](const Receipt::Host& host) {
            return !isAskedUser(host.user) && (path.starts_with(host.application + "/") ||
                                               path.starts_with(host.plugIns + "/"));
        });
    }

    /// What was installed for users who are not asked for now stays theirs.
    void keepOtherUsers(Receipt& receipt) {
        for (const auto& user : last_->users) {
            if (!isAskedUser(user.login)) receipt.users.push_back(user);
        }
        for (const auto& host : last_->hosts) {
            if (!isAskedUser(host.user)) receipt.hosts.push_back(host);
        }
        for (const auto& item : last_->items) {
            if (item.user.empty()) continue;
            if (isAskedUser(item.user) && !liesInHostOfOthers(item.destination)) continue;
            if (plan_.expected.covers(item.destination)) continue;
            receipt.items.push_back(item);
            for (const auto* alternatives : known_.tree(item.destination)) {
                kept_.insert(alternatives->front().path);
                receipt.files.insert(receipt.files.end(), alternatives->begin(),
                                     alternatives->end());
            }
        }
    }

    [[nodiscard]] bool differsFromLast(const Receipt& receipt) const {
        const auto itemsOf = [](const Receipt& from) {
            std::set<std::string> items;
            for (const auto& item : from.items) items.insert(item.destination);
            return items;
        };
        const auto usersOf = [](const Receipt& from) {
            std::set<std::string> users;
            for (const auto& user : from.users) users.insert(user.login);
            return users;
        };
        return !last_->isComplete || last_->version != receipt.version ||
               last_->bundle != receipt.bundle || itemsOf(*last_) != itemsOf(receipt) ||
               usersOf(*last_) != usersOf(receipt);
    }

    void addObsolete() {
        if (last_ == nullptr) return;
        std::set<std::string> places;
        for (const auto& [path, alternatives] : known_.all()) {
            if (plan_.expected.at(path) != nullptr || kept_.contains(path)) continue;
            // A run replaces the whole item, and with it what the item has no more.
            if (plan_.expected.covers(path)) continue;
            const auto present = recordEntry(path, session_.links(), progress_);
            if (present && known_.knows(present.value())) plan_.obsolete.push_back(present.value());
        }
        for (const std::string& path : topmost(plan_.obsolete)) {
            plan_.items.push_back({.source = {},
                                   .destination = path,
                                   .rule = "lastReceipt",
                                   .host = {},
                                   .user = {},
                                   .action = "remove",
                                   .result = {},
                                   .differences = {},
                                   .lost = {}});
        }
    }

    const Session& session_;
    const Receipt* last_;
    const ReadProgress& progress_;
    EntryMap known_;  ///< by the last receipt
    EntryMap payload_;
    std::set<std::string> kept_;
    std::map<dev_t, ReportedSpace> needs_;
    RunPlan plan_;
};

}  // namespace

bool RunPlan::itemsDiffer() const {
    return std::ranges::any_of(items,
                               [](const ReportedItem& item) { return item.action != "same"; });
}

RunPlan makeRunPlan(const Session& session, const Receipt* last, const ReadProgress& progress) {
    return PlanMaker(session, last, progress).make();
}

std::string externalEditorsFile(UserMachine& machine) {
    Platform platform = machine.platform();
    return joinPath(PlugInFilesModel(platform).appSupportPathForProduct(externalEditorsProduct),
                    "ExternalEditors.csv");
}

std::string_view nameOf(InstallRule rule) {
    switch (rule) {
        case InstallRule::mirrorPackage:
            return "mirrorPackage";
        case InstallRule::productFolder:
            return "productFolder";
        case InstallRule::hostApplication:
            return "hostApplication";
        case InstallRule::hostPlugIns:
            return "hostPlugIns";
        case InstallRule::lightroom:
            return "lightroom";
    }
    return "";
}

}  // namespace installer

#include "tools/installerctl/operations/RemovalRun.h"

#include <algorithm>
#include <ranges>
#include <set>

#include "foundation/values/Paths.h"
#include "tools/installerctl/operations/Comparison.h"
#include "tools/installerctl/operations/Summaries.h"
#include "tools/installerctl/output/ProgressBar.h"
#include "tools/installerctl/records/EntryMap.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer {

namespace {

bool isInOrAt(const std::string& path, const std::string& place) {
    return path == place || path.starts_with(place + "/");
}

/// What the administrator may remove: what the receipt records, and the receipt.
WriteGrant grantOf(const Session& session, const Receipt& receipt) {
    WriteGrant grant;
    for (const auto& item : receipt.items) addPlace(item.destination, grant);
    for (const EntryRecord& file : receipt.files) {
        if (!grant.holds(file.path)) addPlace(file.path, grant);
    }
    for (const std::string& folder : receipt.folders) addPlace(folder, grant);
    for (const std::string& entry : receipt.menuEntries) addPlace(entry, grant);
    if (!receipt.log.empty()) addPlace(receipt.log, grant);
    addPlace(session.receipts().path(), grant);
    return grant;
}

class RemovalRun {
  public:
    RemovalRun(const Session& session, const Receipt& receipt, RemovalDepth depth, Report& report)
        : session_(session),
          receipt_(receipt),
          depth_(depth),
          report_(report),
          rights_(session.machine().authorizations().create()),
          remover_(session.links(),
                   rights_->obtain(Authorization::extendRights) ? rights_.get() : nullptr) {
        session.machine().authorizations().limitTo(grantOf(session, receipt));
        for (const EntryRecord& file : receipt.files) recorded_.add(file);
        for (const Receipt& other : session.receipts().others(receipt.identifier)) {
            for (const EntryRecord& file : other.files) shared_.insert(file.path);
            shared_.insert(other.folders.begin(), other.folders.end());
            shared_.insert(other.menuEntries.begin(), other.menuEntries.end());
        }
    }

    ExitStatus run() {
        if (depth_ == RemovalDepth::remove) clearDeadRuns();
        removeEntries();
        findStrangers();
        reportItems();
        removeMenuEntries();
        const std::string receipts = session_.receipts().path();
        for (const std::string& folder : madeFolders()) {
            if (!isInOrAt(receipts, folder)) removeFolder(folder);
        }
        if (!remover_.isRefused() && report_.failed.empty()) removeRecords(receipts);
        return concluded();
    }

  private:
    /// An installation that died has left what it was copying.
    void clearDeadRuns() const {
        std::set<std::string> folders(receipt_.folders.begin(), receipt_.folders.end());
        for (const auto& item : receipt_.items) folders.insert(parentPath(item.destination));
        for (const std::string& entry : receipt_.menuEntries) folders.insert(parentPath(entry));
        folders.insert(session_.receipts().path());
        for (const std::string& folder : folders) clearDeadCopies(folder, session_.links());
    }

    void removeEntries() {
        std::uint64_t bytes = 0;
        for (const EntryRecord& file : receipt_.files) bytes += file.size;
        ProgressBar bar("Removing", bytes);
        // From the end to the start: what is in a folder comes after it.
        for (const auto& [path, alternatives] : std::views::reverse(recorded_.all())) {
            bar.add(alternatives.front().size);
            if (shared_.contains(path)) continue;
            note(path, removed(path, alternatives));
        }
    }

    RemovalOutcome removed(const std::string& path, const EntryMap::Alternatives& alternatives) {
        if (depth_ == RemovalDepth::remove) return remover_.remove(path, alternatives);
        const auto present = recordEntry(path, session_.links());
        if (!present) return {Removal::missing, {}};
        const bool isFolder = present.value().kind == EntryKind::folder &&
                              alternatives.front().kind == EntryKind::folder;
        const bool isSame = isFolder || recorded_.knows(present.value());
        return {isSame ? Removal::removed : Removal::changed, {}};
    }

    void note(const std::string& path, const RemovalOutcome& outcome) {
        switch (outcome.removal) {
            case Removal::removed:
                report_.removed.push_back(path);
                break;
            case Removal::changed:
                report_.kept.push_back({path, "was changed since"});
                break;
            case Removal::failed:
                report_.failed.push_back({path, outcome.error.message()});
                break;
            case Removal::missing:
            case Removal::notEmpty:
                break;
        }
    }

    /// What somebody else has put into the items.
    void findStrangers() {
        for (const auto& item : receipt_.items) {
            const auto* top = recorded_.at(item.destination);
            if (top == nullptr || top->front().kind != EntryKind::folder) continue;
            const ItemComparison found = compareItem(item.destination, recorded_, session_.links());
            for (const std::string& path : topmost(found.extra)) keep(path, "was not installed");
        }
    }

    void keep(const std::string& path, const char* reason) {
        const bool isKnown = std::ranges::any_of(
            report_.kept, [&](const PathNote& note) { return note.path == path; });
        if (!isKnown) report_.kept.push_back({path, reason});
    }

    void reportItems() {
        std::set<std::string> seen;
        for (const auto& item : receipt_.items) {
            if (!seen.insert(item.destination).second) continue;
            ReportedItem reported = reportedItem(item);
            reported.action = "remove";
            reported.result = resultOf(item.destination, reported.differences);
            report_.items.push_back(std::move(reported));
        }
    }

    std::string resultOf(const std::string& destination, std::vector<PathNote>& differences) const {
        if (shared_.contains(destination)) return "shared";
        for (const PathNote& note : report_.failed) {
            if (isInOrAt(note.path, destination)) return "failed";
        }
        for (const PathNote& note : report_.kept) {
            if (isInOrAt(note.path, destination)) differences.push_back(note);
        }
        if (!differences.empty()) return "kept";
        const auto isPartOfIt = [&](const std::string& path) {
            return isInOrAt(path, destination);
        };
        return std::ranges::any_of(report_.removed, isPartOfIt) ? "removed" : "missing";
    }

    void removeMenuEntries() {
        if (depth_ == RemovalDepth::dryRun) return;
        for (const std::string& entry : receipt_.menuEntries) {
            if (!shared_.contains(entry)) note(entry, remover_.removeMenuEntry(entry));
        }
    }

    /// The deepest first.
    [[nodiscard]] std::vector<std::string> madeFolders() const {
        std::vector<std::string> folders;
        for (const std::string& folder : receipt_.folders) {
            if (!shared_.contains(folder)) folders.push_back(folder);
        }
        std::ranges::sort(folders, std::greater<>());
        return folders;
    }

    void removeFolder(const std::string& folder) {
        if (depth_ == RemovalDepth::remove) note(folder, remover_.removeFolder(folder));
    }

    /// The log and the receipt, and the folders that held them.
    void removeRecords(const std::string& receipts) {
        const std::string receipt = session_.receipts().fileOf(receipt_.identifier);
        if (depth_ == RemovalDepth::dryRun) {
            report_.removed.push_back(receipt);
            return;
        }
        if (!receipt_.log.empty()) note(receipt_.log, remover_.removeFile(receipt_.log));
        for (const std::string& folder : madeFolders()) {
            if (isInOrAt(receipt_.log, folder) && !isInOrAt(receipts, folder)) removeFolder(folder);
        }
        // What was kept is nobody's but the user's now: nothing is left to verify.
        if (!report_.failed.empty()) return;
        note(receipt, remover_.removeFile(receipt));
        report_.receipt = "removed";
        // Nobody but this program has use for the folder.
        removeFolder(receipts);
        for (const std::string& folder : madeFolders()) {
            if (isInOrAt(receipts, folder)) removeFolder(folder);
        }
    }

    ExitStatus concluded() {
        report_.changed = !report_.removed.empty();
        const std::string verb =
            depth_ == RemovalDepth::dryRun ? " would be removed, " : " removed, ";
        report_.summary = std::to_string(report_.removed.size()) + " entries" + verb +
                          std::to_string(report_.kept.size()) + " kept, " +
                          std::to_string(report_.failed.size()) + " failed";
        if (remover_.isRefused()) {
            report_.summary += "; administrator rights were refused";
            return ExitStatus::rightsRefused;
        }
        if (!report_.failed.empty()) return ExitStatus::itemsFailed;
        return report_.kept.empty() ? ExitStatus::done : ExitStatus::differences;
    }

    const Session& session_;
    const Receipt& receipt_;
    RemovalDepth depth_;
    Report& report_;
    std::unique_ptr<Authorization> rights_;
    Remover remover_;
    EntryMap recorded_;
    std::set<std::string> shared_;  ///< paths that other products need
};

}  // namespace

void removeEmptyReceiptFolder(const Session& session) {
    static_cast<void>(removeEmptyFolder(session.receipts().path(), session.links()));
}

ExitStatus removeProduct(const Session& session, const Receipt& receipt, RemovalDepth depth,
                         Report& report) {
    return RemovalRun(session, receipt, depth, report).run();
}

}  // namespace installer

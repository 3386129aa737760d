#include "tools/installerctl/operations/RunRecords.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <set>

#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/PlugInFilesModel.h"

namespace installer {

namespace {

std::string installerLog(const Session& session) {
    Platform platform = session.machine().platform();
    return PlugInFilesModel(platform).installerLogPath();
}

/// The menu entries that a run makes or replaces.
std::vector<std::string> menuEntryPaths(const RunPlan& plan) {
    std::vector<std::string> paths;
    for (const UserPlan& user : plan.users) {
        for (const PlannedItem& item : plan.users.front().plan.mirrorItems()) {
            if (item.rule != InstallRule::mirrorPackage) continue;
            // The payload's application makes the same entry as the installed one.
            if (auto path = user.machine->applications().entryOf(item.source)) {
                paths.push_back(std::move(*path));
            }
        }
    }
    return paths;
}

/// Everything that lies in folders which a run makes.
std::vector<std::string> placesOf(const Session& session, const RunPlan& plan) {
    std::vector<std::string> places = menuEntryPaths(plan);
    for (const ReportedItem& item : plan.items) places.push_back(item.destination);
    places.push_back(externalEditorsFile(session.machine()));
    places.push_back(installerLog(session));
    places.push_back(session.receipts().fileOf(session.product().identifier));
    return places;
}

bool isThere(UserMachine& machine, const std::string& path) {
    return machine.files().exists(path);
}

/// Another product of the maker may have made a folder that both need: whoever goes last removes
/// it.
void adoptFolders(const Session& session, const RunPlan& plan, std::set<std::string>& folders) {
    const std::vector<std::string> places = placesOf(session, plan);
    for (const Receipt& other : session.receipts().others(session.product().identifier)) {
        for (const std::string& folder : other.folders) {
            const bool isAbove = std::ranges::any_of(
                places, [&](const std::string& place) { return place.starts_with(folder + "/"); });
            if (isAbove) folders.insert(folder);
        }
    }
}

}  // namespace

std::string timeStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text.data();
}

std::vector<std::string> missingFolders(const Session& session, const RunPlan& plan) {
    std::set<std::string> missing;
    for (const std::string& place : placesOf(session, plan)) {
        std::string folder = parentPath(place);
        while (folder.size() > 1 && !missing.contains(folder) &&
               !isThere(session.machine(), folder)) {
            missing.insert(folder);
            folder = parentPath(folder);
        }
    }
    return {missing.begin(), missing.end()};
}

Receipt receiptBefore(const Session& session, const RunPlan& plan, const Receipt* last,
                      std::vector<std::string> folders) {
    Receipt receipt = plan.receipt;
    receipt.isComplete = false;
    receipt.installed = timeStamp();
    receipt.since = last == nullptr ? receipt.installed : last->since;
    receipt.log = installerLog(session);
    for (EntryRecord& file : receipt.files) file.mode.reset();
    std::vector<std::string> entries = menuEntryPaths(plan);
    std::set<std::string> menu(std::make_move_iterator(entries.begin()),
                               std::make_move_iterator(entries.end()));
    std::set<std::string> made(folders.begin(), folders.end());
    adoptFolders(session, plan, made);
    if (last != nullptr) {
        menu.insert(last->menuEntries.begin(), last->menuEntries.end());
        made.insert(last->folders.begin(), last->folders.end());
        receipt.files.insert(receipt.files.end(), last->files.begin(), last->files.end());
        receipt.items.insert(receipt.items.end(), last->items.begin(), last->items.end());
    }
    receipt.folders.assign(made.begin(), made.end());
    receipt.menuEntries.assign(menu.begin(), menu.end());
    return receipt;
}

Receipt receiptAfter(const RunPlan& plan, const Receipt& before) {
    Receipt receipt = plan.receipt;
    receipt.isComplete = true;
    receipt.since = before.since;
    receipt.installed = before.installed;
    receipt.log = before.log;
    receipt.folders = before.folders;
    receipt.menuEntries = before.menuEntries;
    return receipt;
}

}  // namespace installer

#include "tools/installerctl/operations/InstallationRun.h"

#include <algorithm>
#include <map>
#include <ranges>
#include <set>
#include <thread>

#include <unistd.h>

#include "foundation/observers/NotificationCenter.h"
#include "foundation/values/Paths.h"
#include "install/plan/PlannedWrites.h"
#include "steps/install/InstallFilesController.h"
#include "tools/installerctl/machine/Notes.h"
#include "tools/installerctl/machine/RunLock.h"
#include "tools/installerctl/machine/RunningHosts.h"
#include "tools/installerctl/operations/Remover.h"
#include "tools/installerctl/operations/RunPlan.h"
#include "tools/installerctl/operations/RunRecords.h"
#include "tools/installerctl/operations/Summaries.h"
#include "tools/installerctl/operations/UserFilesAside.h"
#include "tools/installerctl/output/ProgressBar.h"
#include "tools/installerctl/records/EntryMap.h"

namespace installer {

namespace {

class InstallationRun {
  public:
    InstallationRun(Session& session, const Receipt* last, const InstallationRules& rules,
                    Report& report)
        : session_(session),
          last_(last),
          rules_(rules),
          report_(report),
          keepsUserFiles_(rules.keepUserFiles) {}

    ExitStatus run() {
        RunPlan plan = makeRunPlan(session_, last_);
        // A run that died may have left users' files aside: it was asked to keep them.
        if (bringBackAll(plan)) {
            keepsUserFiles_ = true;
            plan = makeRunPlan(session_, last_);
        }
        addPlan(report_, plan, last_ != nullptr);
        if (!plan.hasPayload) return withoutPayload(report_);
        if (const auto refusal = refusalOf(plan); refusal != ExitStatus::done) return refusal;
        if (!plan.itemsDiffer() && !plan.receiptDiffers) return nothingToDo();
        if (!plan.itemsDiffer()) return onlyRecord(plan);
        if (!awaitHosts(plan)) return ExitStatus::hostRuns;
        return change(plan);
    }

  private:
    ExitStatus refused(ExitStatus status, const std::string& reason) {
        report_.summary = reason;
        tellPeople(reason);
        for (ReportedItem& item : report_.items) item.result.clear();
        return status;
    }

    ExitStatus refusalOf(const RunPlan& plan) {
        const std::string& version = session_.product().version;
        if (last_ != nullptr && !rules_.allowDowngrade &&
            compareVersions(version, last_->version) < 0) {
            return refused(
                ExitStatus::downgrade,
                "Version " + last_->version + " is installed, which is newer than " + version);
        }
        if (rules_.requireHost && !plan.hasHosts) {
            return refused(ExitStatus::noHost, "There is no host to install into");
        }
        if (rules_.keepUserFiles && ::geteuid() != 0) {
            return refused(ExitStatus::rightsRefused, "Only root can keep users' files");
        }
        return ExitStatus::done;
    }

    ExitStatus nothingToDo() {
        for (ReportedItem& item : report_.items) item.result = "ok";
        report_.summary = "Nothing differs: nothing was done";
        return report_.failed.empty() ? ExitStatus::done : ExitStatus::itemsFailed;
    }

    /// Everything is there, but not recorded so.
    ExitStatus onlyRecord(const RunPlan& plan) {
        const Receipt before = receiptBefore(session_, plan, last_, missingFolders(session_, plan));
        allow(plan);
        const auto rights = session_.machine().authorizations().create();
        const std::string problem = session_.receipts().write(receiptAfter(plan, before), *rights);
        if (!problem.empty()) return receiptFailed(problem);
        for (ReportedItem& item : report_.items) item.result = "ok";
        report_.changed = true;
        report_.summary = "Nothing differs: only the receipt was written";
        return report_.failed.empty() ? ExitStatus::done : ExitStatus::itemsFailed;
    }

    ExitStatus receiptFailed(const std::string& problem) {
        const std::string file = session_.receipts().fileOf(session_.product().identifier);
        report_.failed.push_back({file, problem});
        const bool isForbidden = ::geteuid() != 0;
        return refused(isForbidden ? ExitStatus::rightsRefused : ExitStatus::itemsFailed,
                       "The receipt " + file + " cannot be written: " + problem);
    }

    bool awaitHosts(const RunPlan& plan) {
        std::vector<HostModel> hosts;
        for (const UserPlan& user : plan.users) {
            hosts.insert(hosts.end(), user.hosts.begin(), user.hosts.end());
        }
        Platform platform = session_.machine().platform();
        while (const auto running = runningHost(platform, hosts)) {
            if (std::chrono::steady_clock::now() >= rules_.deadline) {
                static_cast<void>(refused(ExitStatus::hostRuns, *running + " is running"));
                return false;
            }
            std::this_thread::sleep_for(pauseBetweenLooks);
        }
        return true;
    }

    ExitStatus change(RunPlan& plan) {
        UserMachine& machine = session_.machine();
        allow(plan);
        const auto rights = machine.authorizations().create();
        if (!rights->obtain(Authorization::extendRights)) {
            return refused(ExitStatus::rightsRefused,
                           "There is no way to become the administrator");
        }
        const Receipt before = receiptBefore(session_, plan, last_, missingFolders(session_, plan));
        if (const auto problem = session_.receipts().write(before, *rights); !problem.empty()) {
            return receiptFailed(problem);
        }
        report_.changed = true;
        if (keepsUserFiles_) setAsideAll(plan);
        runEngine(plan);
        static_cast<void>(bringBackAll(plan));
        removeObsolete(plan, *rights);
        judge(plan, before);
        const bool isComplete = report_.failed.empty() && !isDenied_;
        if (isComplete) {
            const auto problem = session_.receipts().write(receiptAfter(plan, before), *rights);
            if (!problem.empty()) return receiptFailed(problem);
        }
        return concluded();
    }

    /// What each user's run may change as root: the plan's own, and for the first one what this
    /// program does besides.
    void allow(const RunPlan& plan) {
        for (const UserPlan& user : plan.users) {
            Platform platform = user.machine->platform();
            WriteGrant grant = plannedWrites(platform, user.plan);
            if (&user == &plan.users.front()) {
                addPlace(session_.receipts().fileOf(session_.product().identifier), grant);
                for (const EntryRecord& entry : plan.obsolete) addPlace(entry.path, grant);
            }
            user.machine->authorizations().limitTo(grant);
        }
    }

    void runEngine(const RunPlan& plan) {
        std::uint64_t bytes = 0;
        for (const UserPlan& user : plan.users) bytes += user.plan.totalBytes();
        ProgressBar bar("Installing", bytes);
        std::vector<std::string> installed;
        for (const UserPlan& user : plan.users) {
            Platform platform = user.machine->platform();
            InstallFilesController controller(platform);
            controller.setProgressIndicator(&bar);
            if (&user == &plan.users.front()) {
                controller.install(user.hosts, true);
            } else {
                controller.installForFurtherUser(user.hosts, installed);
            }
            installed = controller.installedPaths();
            noteFailures(controller);
            platform.notifications.post({applicationWillTerminate, nullptr, {}});
            isDenied_ = controller.authDenied();
            if (isDenied_ || controller.fileOpErrorOccurred()) return;
        }
    }

    void noteFailures(const InstallFilesController& controller) {
        for (const std::string& path : controller.failedPaths()) {
            const auto reason = controller.failureReasons().find(path);
            const bool isKnown = reason != controller.failureReasons().end();
            failures_.emplace(path, isKnown ? reason->second.logged : std::string());
        }
    }

    /// Whether anything waited.
    bool bringBackAll(const RunPlan& plan) {
        if (::geteuid() != 0) return false;
        bool hasWaited = false;
        for (const ReportedItem& item : plan.items) {
            if (!aside_.waits(item.destination)) continue;
            hasWaited = true;
            for (PathNote& note : aside_.bringBack(item.destination)) {
                report_.kept.push_back(std::move(note));
            }
        }
        return hasWaited;
    }

    void setAsideAll(RunPlan& plan) {
        for (ReportedItem& item : report_.items) {
            std::erase_if(item.lost, [&](const std::string& path) {
                // Changed files of the product itself are replaced; what is only the user's waits.
                if (plan.expected.at(path) != nullptr || path == item.destination) return false;
                return aside_.setAside(item.destination, path).empty();
            });
        }
    }

    void removeObsolete(const RunPlan& plan, Authorization& rights) {
        std::set<std::string> shared;
        for (const Receipt& other : session_.receipts().others(session_.product().identifier)) {
            for (const EntryRecord& file : other.files) shared.insert(file.path);
        }
        Remover remover(session_.links(), &rights);
        for (const EntryRecord& entry : std::views::reverse(plan.obsolete)) {
            if (shared.contains(entry.path)) continue;
            const RemovalOutcome outcome = remover.remove(entry.path, {entry});
            if (outcome.removal == Removal::removed) report_.removed.push_back(entry.path);
        }
    }

    /// Looks at the disk again: what counts is what is there.
    void judge(const RunPlan& plan, const Receipt& before) {
        const RunPlan after = makeRunPlan(session_, &before);
        for (ReportedItem& item : report_.items) {
            if (item.action == "remove") {
                const auto gone = std::ranges::find(report_.removed, item.destination);
                item.result = gone == report_.removed.end() ? "kept" : "removed";
                continue;
            }
            const auto found =
                std::ranges::find(after.items, item.destination, &ReportedItem::destination);
            const bool isSame = found != after.items.end() && found->action == "same";
            item.differences.clear();
            item.result = isSame ? "installed" : "failed";
            if (!isSame) fail(item, found == after.items.end() ? ReportedItem() : *found, plan);
        }
    }

    void fail(ReportedItem& item, const ReportedItem& after, const RunPlan& plan) {
        item.differences = after.differences;
        const auto failure = failures_.find(item.destination);
        std::string reason = failure == failures_.end() ? std::string() : failure->second;
        for (const UserPlan& user : plan.users) {
            if (reason.empty()) reason = user.machine->notes().lastAbout(item.destination);
        }
        // After a failed item the engine installs into no further host.
        const bool isLate = !item.host.empty() && !failures_.empty();
        if (reason.empty() && failure == failures_.end() && isLate) {
            reason = "was not tried, since another item had failed";
        }
        if (reason.empty() && !item.differences.empty()) {
            reason = item.differences.front().path + " " + item.differences.front().reason;
        }
        if (reason.empty()) reason = "it is not on the disk";
        report_.failed.push_back({item.destination, reason});
    }

    ExitStatus concluded() {
        const auto installed =
            std::ranges::count(report_.items, "installed", &ReportedItem::result);
        report_.summary = std::to_string(installed) + " of " +
                          std::to_string(report_.items.size()) + " items installed";
        if (!report_.removed.empty()) {
            report_.summary += ", " + std::to_string(report_.removed.size()) + " entries removed";
        }
        if (isDenied_) {
            return refused(ExitStatus::rightsRefused,
                           report_.summary + "; administrator rights were refused or lost");
        }
        if (report_.failed.empty()) return ExitStatus::done;
        report_.summary += ", " + std::to_string(report_.failed.size()) + " failed";
        for (const PathNote& note : report_.failed) tellPeople(note.path + ": " + note.reason);
        return ExitStatus::itemsFailed;
    }

    Session& session_;
    const Receipt* last_;
    const InstallationRules& rules_;
    Report& report_;
    bool keepsUserFiles_;
    UserFilesAside aside_;
    std::map<std::string, std::string> failures_;  ///< items that the engine gave up, and why
    bool isDenied_ = false;
};

}  // namespace

ExitStatus installProduct(Session& session, const Receipt* last, const InstallationRules& rules,
                          Report& report) {
    return InstallationRun(session, last, rules, report).run();
}

}  // namespace installer

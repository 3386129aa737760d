#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/faults/engine/FaultOracle.h"
#include "tests/faults/engine/FaultRun.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FaultSweep.h"

// Every call of a whole run that can fail, the user's and the administrator's, fails in turn, until
// a run passes untouched. The calls are those of the platform's interfaces, over a disk in memory.

namespace installer::test {
namespace {

using testing::IsEmpty;

#ifdef INSTALLER_SANITIZE
constexpr std::size_t step = 5;  ///< each run takes twenty times as long then
#else
constexpr std::size_t step = 1;
#endif

enum class Rights {
    everywhere,           ///< the user may change everything, as root may
    onlyOfAdministrator,  ///< outside the home folder every item goes through the commands
};

/// A machine with the scene on its disk, in memory.
class Machine {
  public:
    explicit Machine(Rights rights) : rights_(rights) {
        prepareFaultScene(fake_, "");
        for (const auto& [path, entry] : fault_scene::disk()) add(path, entry);
        if (rights == Rights::everywhere) return;
        for (const char* folder : {"/Applications", "/Library", "/Volumes"}) {
            fake_.memory.makeUnwritable(folder);
        }
    }

    RunReport run(Faults& faults) {
        RunReport report = runInstallStep(fake_, fake_.memory, fake_.authorizations, faults);
        report.userMayWriteEverywhere = rights_ == Rights::everywhere;
        return report;
    }

    [[nodiscard]] DiskTree disk() const {
        DiskTree tree;
        for (const std::string& path : fake_.memory.paths()) {
            const MemoryFileManager::Node& node = *fake_.memory.node(path);
            tree[path] = {node.type, node.contents, node.permissions, node.owner};
        }
        return tree;
    }

  private:
    void add(const std::string& path, const DiskEntry& entry) {
        if (entry.type == FileType::folder) fake_.memory.addFolder(path, entry.permissions);
        if (entry.type == FileType::symbolicLink) fake_.memory.addLink(path, entry.contents);
        if (entry.type == FileType::regular) {
            fake_.memory.addFile(path, entry.contents, entry.permissions);
        }
    }

    Rights rights_;
    FakePlatform fake_;
};

class FaultInjection : public testing::TestWithParam<std::tuple<Rights, Lasting>> {
  protected:
    FaultInjection() {
        Machine machine(rights_);
        before_ = machine.disk();
        Faults none;
        cleanReport_ = machine.run(none);
        after_ = machine.disk();
        calls_ = none.calls();
    }

    /// What is wrong with the run that goes as planned, and with the good one after it.
    std::vector<std::string> complaintsAbout(const FaultPlan& plan) {
        Machine machine(rights_);
        // Items that fail are tried again as the administrator and then looked for 32 times.
        const std::size_t limit = calls_.size() * 4;
        Faults faults(plan, limit);
        try {
            const RunReport report = machine.run(faults);
            std::vector<std::string> found = complaints(before_, machine.disk(), report);
            if (faults.hits().empty()) found.emplace_back("nothing failed");
            Faults none({}, limit);
            const RunReport second = machine.run(none);
            if (!second.successful) found.emplace_back("the next run failed");
            for (const std::string& path : notAsAfterACleanRun(machine.disk())) {
                found.push_back("the next run leaves this as it was left: " + path);
            }
            return found;
        } catch (const Faults::Runaway& runaway) {
            return {runaway.what()};
        }
    }

    /// Folders that the run with the fault has made keep the owners and modes that it gave them.
    [[nodiscard]] std::vector<std::string> notAsAfterACleanRun(const DiskTree& disk) const {
        std::vector<std::string> paths;
        for (const auto& [path, entry] : disk) {
            const auto found = after_.find(path);
            if (found == after_.end()) {
                paths.push_back(path);
                continue;
            }
            DiskEntry wanted = found->second;
            if (entry.type == FileType::folder && !before_.contains(path)) {
                wanted.owner = entry.owner;
                wanted.permissions = entry.permissions;
            }
            if (entry != wanted) paths.push_back(path);
        }
        for (const auto& [path, entry] : after_) {
            if (!disk.contains(path)) paths.push_back(path);
        }
        return paths;
    }

    Rights rights_ = std::get<Rights>(GetParam());
    Lasting lasting_ = std::get<Lasting>(GetParam());
    DiskTree before_;
    DiskTree after_;
    RunReport cleanReport_;
    std::vector<Faults::Call> calls_;
};

TEST_P(FaultInjection, LeavesEachDestinationWholeAndSaysWhatFailed) {
    ASSERT_TRUE(cleanReport_.successful);
    ASSERT_THAT(complaints(before_, after_, cleanReport_), IsEmpty());
    int injected = 0;
    for (std::size_t place = 1; place <= calls_.size(); place += step) {
        for (const FaultPlan& plan : faultsOf(calls_[place - 1], place, lasting_)) {
            ++injected;
            EXPECT_THAT(complaintsAbout(plan), IsEmpty()) << described(plan, calls_[place - 1]);
        }
    }
    const FaultPlan beyond = {.place = calls_.size() + 1, .lasting = lasting_};
    EXPECT_EQ(complaintsAbout(beyond), std::vector<std::string>{"nothing failed"});
    RecordProperty("injected", injected);
}

INSTANTIATE_TEST_SUITE_P(
    Runs, FaultInjection,
    testing::Combine(testing::Values(Rights::everywhere, Rights::onlyOfAdministrator),
                     testing::Values(Lasting::once, Lasting::itsKind, Lasting::everything)),
    [](const auto& test) {
        const bool may = std::get<Rights>(test.param) == Rights::everywhere;
        const Lasting lasting = std::get<Lasting>(test.param);
        return std::string(may ? "AsRoot" : "AsOrdinaryUser") + (lasting == Lasting::once ? "Once"
                                                                 : lasting == Lasting::itsKind
                                                                     ? "WithItsKind"
                                                                     : "WithAllAfterIt");
    });

}  // namespace
}  // namespace installer::test

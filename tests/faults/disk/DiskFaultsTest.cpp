#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/files/LinuxFileManager.h"
#include "tests/faults/disk/DiskScene.h"
#include "tests/faults/disk/ForkedHelper.h"
#include "tests/faults/disk/InProcessAuthorizations.h"
#include "tests/faults/disk/SystemCallFaults.h"
#include "tests/faults/engine/FaultOracle.h"
#include "tests/faults/engine/FaultRun.h"
#include "tests/support/ScratchFolder.h"

// A whole run on a real disk, with the file manager that ships and the helper's own actions. The
// system calls below them fail in turn, until a run passes untouched: each call that changes
// something, with one of the errors, and one in several of the others. With the environment
// variable INSTALLER_ALL_DISK_FAULTS every call fails in every way, which takes an hour.

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Effect = SystemCallPlan::Effect;
using system_call_faults::KernelCopies;

constexpr uid_t nobody = 65534;
constexpr std::array errors = {EIO, ENOSPC, EACCES, EROFS, EINTR};
#ifdef INSTALLER_SANITIZE
constexpr std::size_t changingStep = 6;  ///< each run starts three processes, which then takes long
#else
constexpr std::size_t changingStep = 1;
#endif
constexpr unsigned longestRun = 60;  ///< in seconds; a run takes some milliseconds

/// A line that a run begins with when nothing of it was made to fail.
constexpr const char* untouched = "untouched";

bool isTemporary(const std::string& path) {
    return contains(path, "/.installing-");
}

std::string loginNameOf(uid_t user) {
    const passwd* entry = ::getpwuid(user);
    return entry == nullptr ? "" : entry->pw_name;
}

/// Runs the work in a process of its own, which begins with nothing remembered and cannot take the
/// test with it, and gives the text that it says.
std::vector<std::string> linesFromAnotherProcess(
    const std::function<std::vector<std::string>()>& work) {
    int ends[2] = {};
    if (::pipe(ends) != 0) return {"no pipe"};
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(longestRun);
        std::string text;
        for (const std::string& line : work()) text += line + "\n";
        std::size_t written = 0;
        while (written < text.size()) {
            const ssize_t count = ::write(ends[1], text.data() + written, text.size() - written);
            if (count < 0) ::_exit(1);
            written += static_cast<std::size_t>(count);
        }
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer;
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    std::vector<std::string> lines = split(text, '\n');
    lines.pop_back();
    if (WIFSIGNALED(status)) {
        lines.push_back("the run ended by signal " + std::to_string(WTERMSIG(status)));
    } else if (WEXITSTATUS(status) != 0) {
        lines.push_back("the run ended with status " + std::to_string(WEXITSTATUS(status)));
    }
    return lines;
}

/// A disk with the scene on it.
class SceneDisk {
  public:
    explicit SceneDisk(uid_t user) {
        std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
        makeOnDisk(fault_scene::disk(), folder_.path(), user);
    }
    [[nodiscard]] const std::string& path() const { return folder_.path(); }
    [[nodiscard]] DiskTree tree() const { return treeOnDisk(folder_.path()); }

  private:
    /// A file system in memory is as real as others, and thousands of trees are made on it.
    static std::string parent() { return ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp"; }

    ScratchFolder folder_{parent()};
};

struct RunOnDisk {
    RunReport report;
    std::vector<SystemCall> calls;
};

class DiskFaults : public testing::TestWithParam<uid_t> {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to act as two users";
        const SceneDisk disk(user_);
        before_ = disk.tree();
        calls_ = callsOfACleanRun(disk);
    }

    [[nodiscard]] RunOnDisk run(const SceneDisk& disk, const SystemCallPlan& plan) const {
        InProcessAuthorizations authorizations(user_, ProtectedFolders(disk.path(), "", user_));
        Faults faults;
        RunOnDisk run;
        run.report = runAsTheUser(disk, authorizations, faults, [&] {
            system_call_faults::arm(plan, kernelCopies_, [&] { faults.addHit(); });
        });
        run.calls = system_call_faults::disarm();
        return run;
    }

    [[nodiscard]] RunReport runWithoutFaults(const SceneDisk& disk) const {
        ForkedHelper helper(user_, ProtectedFolders(disk.path(), "", user_));
        Faults none;
        return runAsTheUser(disk, helper, none, {});
    }

    [[nodiscard]] RunReport runAsTheUser(const SceneDisk& disk, Authorizations& authorizations,
                                         Faults& faults,
                                         const std::function<void()>& atStart) const {
        FakePlatform fake;
        prepareFaultScene(fake, disk.path());
        fake.searchPaths.login = loginNameOf(user_);
        fake.searchPaths.homeName = lastPathComponent(fault_scene::home);
        LinuxFileManager files(fake.log, user_ == 0 ? LinkPolicy::trustedOnly : LinkPolicy::follow,
                               0);
        actAs(user_);
        RunReport report = runInstallStep(fake, files, authorizations, faults, atStart);
        actAs(0);
        report.userMayWriteEverywhere = user_ == 0;
        return report;
    }

    [[nodiscard]] std::vector<SystemCall> callsOfACleanRun(const SceneDisk& disk) const {
        std::vector<SystemCall> calls;
        const auto names = linesFromAnotherProcess([&] {
            std::vector<std::string> lines;
            for (const SystemCall& call : run(disk, {}).calls) {
                const std::string kind = call.writes ? "w " : call.changesSomething ? "c " : "l ";
                lines.push_back(kind + call.name);
            }
            return lines;
        });
        for (const std::string& line : names) {
            calls.push_back({line.substr(2), line.front() != 'l', line.front() == 'w'});
        }
        return calls;
    }

    /// What is wrong with the run that goes as planned, and with a good one of a new process after
    /// it. "untouched" for a run of which nothing failed.
    [[nodiscard]] std::vector<std::string> complaintsAbout(const SystemCallPlan& plan) const {
        const SceneDisk disk(user_);
        std::vector<std::string> found = linesFromAnotherProcess([&] {
            const RunOnDisk faulted = run(disk, plan);
            if (plan.place > faulted.calls.size()) return std::vector<std::string>{untouched};
            DiskTree after = disk.tree();
            // What could not be removed is left to the next run.
            std::erase_if(after, [](const auto& entry) { return isTemporary(entry.first); });
            return complaints(before_, after, faulted.report);
        });
        for (const std::string& line : linesFromAnotherProcess([&] {
                 const RunReport report = runWithoutFaults(disk);
                 auto lines = complaints(before_, disk.tree(), report);
                 if (!report.successful) lines.emplace_back("it failed");
                 return lines;
             })) {
            found.push_back("the next run: " + line);
        }
        return found;
    }

    void check(const SystemCallPlan& plan) {
        ++injected_;
        const std::string name =
            plan.place > calls_.size() ? "beyond the end" : calls_[plan.place - 1].name;
        EXPECT_THAT(complaintsAbout(plan), IsEmpty())
            << "system call " << plan.place << ", " << name << ", fails"
            << (plan.fromThenOn ? " and so do all after it: " : " once: ")
            << std::generic_category().message(plan.error)
            << (plan.effect == Effect::shortWrite ? ", after a short write" : "")
            << (plan.effect == Effect::done ? ", after its work" : "");
    }

    /// Something that can go wrong with each call that changes something, and with some of the
    /// others; over the places, every error and every effect.
    [[nodiscard]] std::vector<SystemCallPlan> someFaultsOf(std::size_t place) const {
        const std::size_t turn = place / errors.size();
        const std::size_t step = calls_[place - 1].changesSomething ? changingStep : 16;
        if (place % step != 0) return {};
        std::vector<SystemCallPlan> faults = faultsWith(errors.at(place % errors.size()), place);
        return {faults.at(turn % faults.size())};
    }

    [[nodiscard]] std::vector<SystemCallPlan> allFaultsOf(std::size_t place) const {
        std::vector<SystemCallPlan> plans;
        for (const int error : errors) {
            for (const SystemCallPlan& plan : faultsWith(error, place)) plans.push_back(plan);
        }
        return plans;
    }

    [[nodiscard]] std::vector<SystemCallPlan> faultsWith(int error, std::size_t place) const {
        const SystemCall& call = calls_[place - 1];
        std::vector<SystemCallPlan> plans = {{.place = place, .error = error}};
        if (call.writes) {
            plans.push_back({.place = place, .error = ENOSPC, .effect = Effect::shortWrite});
        } else if (call.changesSomething) {
            plans.push_back({.place = place, .error = error, .effect = Effect::done});
        }
        // Nothing is interrupted for ever: who is interrupted may try again.
        if (error != EINTR) plans.push_back({.place = place, .fromThenOn = true, .error = error});
        return plans;
    }

    uid_t user_ = GetParam();
    KernelCopies kernelCopies_ = user_ == 0 ? KernelCopies::yes : KernelCopies::no;
    DiskTree before_;
    std::vector<SystemCall> calls_;
    int injected_ = 0;
};

TEST_P(DiskFaults, LeaveEachDestinationWholeAndAreReported) {
    ASSERT_FALSE(calls_.empty());

    const bool all = std::getenv("INSTALLER_ALL_DISK_FAULTS") != nullptr;
    for (std::size_t place = 1; place <= calls_.size(); ++place) {
        for (const SystemCallPlan& plan : all ? allFaultsOf(place) : someFaultsOf(place)) {
            check(plan);
        }
    }
    EXPECT_THAT(complaintsAbout({.place = calls_.size() + 1, .error = EIO}),
                ElementsAre(untouched));
    RecordProperty("injected", injected_);
}

INSTANTIATE_TEST_SUITE_P(Users, DiskFaults, testing::Values(0, nobody), [](const auto& test) {
    return test.param == 0 ? "Root" : "OrdinaryUser";
});

}  // namespace
}  // namespace installer::test

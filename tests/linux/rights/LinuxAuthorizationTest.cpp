#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "install/rights/OneLineTasksWithOutput.h"
#include "linux/process/LinuxChildProcess.h"
#include "linux/process/PollEventLoop.h"
#include "linux/rights/LinuxAuthorization.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

std::string readAll(PrivilegedTool& tool) {
    std::string text;
    std::array<char, 10> buffer{};
    while (const std::size_t count = tool.readOutput(buffer)) text.append(buffer.data(), count);
    return text;
}

class CountingSink : public ProgressSink {
  public:
    std::uint64_t bytes = 0;
    int calls = 0;  ///< but those of a wait, which come with no bytes as often as it lasts
    void bytesCopied(std::uint64_t more) override {
        bytes += more;
        if (more > 0) ++calls;
    }
};

class LinuxAuthorizationTest : public testing::Test {
  protected:
    LinuxAuthorizationTest() {
        access.helper.path = FAKE_HELPER;
        access.reason = "Sample needs the administrator's rights.";
        access.announce = [this](std::string_view line) { announced.emplace_back(line); };
        access.means = [this] { return means; };
        useSudo();
    }

    std::unique_ptr<Authorization> obtained() {
        auto authorization = LinuxAuthorizations(access).create();
        EXPECT_TRUE(authorization->obtain(Authorization::extendRights));
        return authorization;
    }

    /// An executable script of the test's own. It can count its runs with "$LOG".
    std::string script(const std::string& name, const std::string& body) const {
        folder.add(name, "#!/bin/sh\nLOG='" + (folder / "log") + "'\n" + body + "\n");
        ::chmod((folder / name).c_str(), 0755);
        return folder / name;
    }
    [[nodiscard]] std::vector<std::string> log() const {
        std::ifstream file(folder / "log");
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }
    /// Asks nothing, and starts the helper as sudo does for root.
    void useSudo() {
        means = AdministratorMeans();
        means.sudo = script("sudo", "shift 2; SUDO_UID=0 exec \"$@\"");
    }
    void usePkexec(const std::string& body) {
        means = AdministratorMeans();
        means.pkexec = script("pkexec", body);
        means.hasSystemBus = true;
    }

    ScratchFolder folder;
    AdministratorMeans means;
    AdministratorAccess access;
    std::vector<std::string> announced;
    PollEventLoop loop;
    LinuxChildProcesses processes{loop};
    OneLineTasksWithOutput tasks{processes, loop};
    std::optional<TaskError> error{std::in_place};
};

// Obtaining.

TEST_F(LinuxAuthorizationTest, NamesTheMissingHelper) {
    access.helper.path = "/nowhere/privileged-helper";
    const auto authorization = LinuxAuthorizations(access).create();
    ASSERT_FALSE(authorization->obtain(0));
    EXPECT_EQ(authorization->trouble(), AuthorizationTrouble::helperUnusable);
    EXPECT_EQ(announced, std::vector<std::string>{"The privileged helper is missing or cannot be "
                                                  "started: /nowhere/privileged-helper"});
}

TEST_F(LinuxAuthorizationTest, SaysThatNoProgramAsksForRights) {
    means = {};
    const auto authorization = LinuxAuthorizations(access).create();
    ASSERT_FALSE(authorization->obtain(0));
    EXPECT_EQ(authorization->trouble(), AuthorizationTrouble::noWay);
    EXPECT_EQ(announced, std::vector<std::string>{"There is no way to administrator rights: "
                                                  "neither polkit nor sudo was found"});
}

TEST_F(LinuxAuthorizationTest, HasNoTroubleOnceItIsObtained) {
    EXPECT_EQ(obtained()->trouble(), AuthorizationTrouble::none);
    EXPECT_TRUE(announced.empty());
}

TEST_F(LinuxAuthorizationTest, ObtainsWithoutAskingOrStartingAnything) {
    usePkexec("echo started >> \"$LOG\"; exit 126");
    const auto authorization = obtained();
    EXPECT_TRUE(log().empty());
    EXPECT_TRUE(announced.empty());
}

TEST_F(LinuxAuthorizationTest, CannotBeObtainedWithoutAWayOrWithoutTheHelper) {
    access.helper.path = "/nonexistent/helper";
    EXPECT_FALSE(LinuxAuthorizations(access).create()->obtain(0));
    access.helper.path = FAKE_HELPER;
    means = AdministratorMeans();
    const auto authorization = LinuxAuthorizations(access).create();
    EXPECT_FALSE(authorization->obtain(0));
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
}

// Asking.

TEST_F(LinuxAuthorizationTest, RemembersThatItWasCancelled) {
    usePkexec("echo started >> \"$LOG\"; exit 126");
    const auto authorization = obtained();
    for (int index = 0; index < 3; ++index) {
        const PrivilegedLaunch launch = authorization->execute("/print", {});
        EXPECT_EQ(launch.status, authorization_status::canceled);
        EXPECT_EQ(launch.tool, nullptr);
    }
    tasks.authorizedLaunchPath("/print", {}, *authorization, &error, true);
    EXPECT_EQ(error.value().code, 5530);
    EXPECT_EQ(log().size(), 1U);
    EXPECT_EQ(announced.size(), 1U);
}

class LinuxAuthorizationRefusedStart : public LinuxAuthorizationTest,
                                       public testing::WithParamInterface<std::string> {};

TEST_P(LinuxAuthorizationRefusedStart, IsADenialAndRemembered) {
    usePkexec("echo started >> \"$LOG\"\n" + GetParam());
    const auto authorization = obtained();
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
    tasks.authorizedLaunchPath("/print", {}, *authorization, &error, true);
    EXPECT_EQ(error.value().code, 5531);
    EXPECT_EQ(log().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Endings, LinuxAuthorizationRefusedStart,
                         testing::Values("exit 127", "exit 1", "exit 0", "kill -9 $$",
                                         "kill -15 $$", "echo 'password: --------'; exit 1"));

TEST_F(LinuxAuthorizationTest, SaysWhoAsksAndWhyBeforeItAsks) {
    usePkexec("echo asked >> \"$LOG\"; exit 127");
    std::size_t asked = 99;
    access.announce = [&](std::string_view line) {
        EXPECT_EQ(line, "Sample needs the administrator's rights.");
        asked = log().size();
    };
    EXPECT_NE(obtained()->execute("/print", {}).status, 0);
    EXPECT_EQ(asked, 0U);
    EXPECT_EQ(log().size(), 1U);
}

TEST_F(LinuxAuthorizationTest, SaysWhatMayChangeBeforeItAsksAndTellsTheHelper) {
    usePkexec("echo \"$*\" >> \"$LOG\"; shift; exec \"$@\"");
    const auto authorization = obtained();
    WriteGrant grant;
    grant.addFolder("/Library/Acme");
    grant.addDestination("/Library/Acme/a");
    grant.addDestination("/Library/Acme/b");
    grant.addRemovableName("Old.plugin");
    authorization->limitTo(grant);
    EXPECT_TRUE(log().empty());
    const PrivilegedLaunch launch = authorization->execute("/plan", {});
    ASSERT_EQ(launch.status, 0);
    EXPECT_EQ(readAll(*launch.tool), "/Library/Acme/a\n/Library/Acme/b\nOld.plugin\n");
    EXPECT_EQ(announced, (std::vector<std::string>{access.reason, access.folderWords.heading,
                                                   "  /Library/Acme"}));
    ASSERT_EQ(log().size(), 1U);
    EXPECT_TRUE(log().front().ends_with(" --started-by polkit --into /Library/Acme"));
}

TEST_F(LinuxAuthorizationTest, AsksAgainForAnotherGrantButNotForTheSame) {
    usePkexec("echo asked >> \"$LOG\"; shift; exec \"$@\"");
    const auto authorization = obtained();
    WriteGrant grant;
    grant.addFolder("/Library/Acme");
    for (int index = 0; index < 2; ++index) {
        authorization->limitTo(grant);
        EXPECT_EQ(authorization->execute("/print", {}).status, 0);
    }
    EXPECT_EQ(log().size(), 1U);
    grant.addFolder("/Applications");
    authorization->limitTo(grant);
    EXPECT_EQ(log().size(), 1U);
    EXPECT_EQ(authorization->execute("/print", {}).status, 0);
    EXPECT_EQ(log().size(), 2U);
}

TEST_F(LinuxAuthorizationTest, AsksNobodyToRunAHelperThatOthersCanChange) {
    usePkexec("echo asked >> \"$LOG\"; shift; exec \"$@\"");
    std::filesystem::create_directory(folder / "bundle");
    std::filesystem::copy_file(FAKE_HELPER, folder / "bundle/helper");
    access.helper.path = folder / "bundle/helper";
    ASSERT_EQ(::chmod((folder / "bundle").c_str(), 0777), 0);
    const auto authorization = obtained();
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
    EXPECT_EQ(announced,
              (std::vector<std::string>{
                  "No administrator rights are asked for, because other users can change " +
                  (folder / "bundle")}));
    EXPECT_TRUE(log().empty());
    ASSERT_EQ(::chmod((folder / "bundle").c_str(), 0755), 0);
    EXPECT_EQ(obtained()->execute("/print", {}).status, 0);
}

/// Whether another process of this user can take a descriptor out of this process.
bool canBeRobbed() {
    const pid_t victim = ::getpid();
    const pid_t robber = ::fork();
    if (robber == 0) {
        const auto process = static_cast<int>(::syscall(SYS_pidfd_open, victim, 0));
        ::_exit(::syscall(SYS_pidfd_getfd, process, STDERR_FILENO, 0) >= 0 ? 1 : 0);
    }
    int status = 0;
    return ::waitpid(robber, &status, 0) == robber && status != 0;
}

TEST_F(LinuxAuthorizationTest, NoOtherProcessOfTheUserCanTakeTheConnectionOutOfTheInstaller) {
    if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to become an ordinary user";
    usePkexec("shift; exec \"$@\"");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    // Wherever the build lies, the ordinary user may not be able to look there.
    std::filesystem::copy_file(FAKE_HELPER, folder / "helper");
    access.helper.path = folder / "helper";
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setresgid(65534, 65534, 65534) != 0 || ::setresuid(65534, 65534, 65534) != 0) {
            ::_exit(98);
        }
        // A change of user has the same effect; programs that a user starts are open to others.
        ::prctl(PR_SET_DUMPABLE, 1);
        if (!canBeRobbed()) ::_exit(97);
        auto authorization = obtained();
        if (authorization->execute("/print", {}).status != 0) ::_exit(96);
        if (canBeRobbed()) ::_exit(95);
        authorization.reset();
        ::_exit(canBeRobbed() ? 0 : 94);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 97) GTEST_SKIP() << "NOT TESTED: this machine allows nobody that";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(LinuxAuthorizationTest, IsOpenToOthersAgainAfterARefusal) {
    usePkexec("exit 127");
    const int before = ::prctl(PR_GET_DUMPABLE);
    EXPECT_NE(obtained()->execute("/print", {}).status, 0);
    EXPECT_EQ(::prctl(PR_GET_DUMPABLE), before);
}

TEST_F(LinuxAuthorizationTest, AsksNobodyWhenItIsRootAlready) {
    useSudo();
    means.isRoot = true;
    // No tool of an installation: it is refused, but nobody is asked and no helper is looked for.
    access.helper.path = "/nonexistent/helper";
    const PrivilegedLaunch launch = obtained()->execute("/print", {});
    EXPECT_EQ(launch.status, ::getuid() == 0 ? 0 : authorization_status::denied);
    EXPECT_TRUE(announced.empty());
    EXPECT_TRUE(log().empty());
}

TEST_F(LinuxAuthorizationTest, StartsOneHelperThroughPkexecForAllCommands) {
    usePkexec("echo \"$*\" >> \"$LOG\"; shift; exec \"$@\"");
    const auto authorization = obtained();
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(authorization->execute("/print", {}).status, 0);
    }
    EXPECT_EQ(log(), (std::vector<std::string>{std::string("--disable-internal-agent ") +
                                               FAKE_HELPER + " --started-by polkit"}));
}

TEST_F(LinuxAuthorizationTest, AsksThroughSudoWithTheReasonInItsPrompt) {
    means = AdministratorMeans();
    means.sudo = script("sudo", "echo \"$1 $2 $3\" >> \"$LOG\"; shift 5; exec \"$@\"");
    means.hasAskpass = true;
    const auto authorization = obtained();
    EXPECT_EQ(authorization->execute("/print", {}).status, 0);
    EXPECT_EQ(announced.size(), 1U);
    EXPECT_EQ(log().front(), "-k -A -p");
}

TEST_F(LinuxAuthorizationTest, IsDeniedByTheRealSudoWithoutAQuestion) {
    if (::access("/usr/bin/sudo", X_OK) != 0 || ::geteuid() != 0) {
        GTEST_SKIP() << "NOT TESTED: needs root to become an ordinary user, and sudo";
    }
    means = AdministratorMeans();
    means.sudo = "/usr/bin/sudo";
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setresgid(65534, 65534, 65534) != 0 || ::setresuid(65534, 65534, 65534) != 0) {
            ::_exit(98);
        }
        access.helper.path = "/bin/true";
        auto authorization = LinuxAuthorizations(access).create();
        const bool denied = authorization->obtain(0) &&
                            authorization->execute("/x", {}).status == authorization_status::denied;
        ::_exit(denied ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(LinuxAuthorizationTest, TakesNoHelperThatSpeaksOtherwise) {
    for (const std::string name : {"old", "mute", "babbling"}) {
        std::filesystem::create_symlink(FAKE_HELPER, folder / name);
        access.helper.path = folder / name;
        EXPECT_EQ(obtained()->execute("/print", {}).status, authorization_status::denied) << name;
    }
}

// Running.

TEST_F(LinuxAuthorizationTest, GivesTheOutputOfATool) {
    const auto authorization = obtained();
    const PrivilegedLaunch launch = authorization->execute("/print", {"one ", "", "two"});
    ASSERT_EQ(launch.status, 0);
    EXPECT_EQ(readAll(*launch.tool), "one two");
    EXPECT_EQ(launch.tool->readOutput({}), 0U);
    EXPECT_EQ(launch.tool->status(), 0);
}

TEST_F(LinuxAuthorizationTest, KeepsTheOutputUntilItIsReadAfterTheEnd) {
    const auto authorization = obtained();
    const PrivilegedLaunch launch =
        authorization->execute("/print", std::vector<std::string>(10, std::string(5000, 'x')));
    launch.tool->waitUntilEnded();
    EXPECT_EQ(readAll(*launch.tool), std::string(50000, 'x'));
}

TEST_F(LinuxAuthorizationTest, OutputThatNobodyReadDoesNotDisturbTheNextTool) {
    const auto authorization = obtained();
    static_cast<void>(authorization->execute("/print", {"never read"}));
    const PrivilegedLaunch kept = authorization->execute("/print", {"read later"});
    const PrivilegedLaunch launch = authorization->execute("/print", {"mine"});
    EXPECT_EQ(readAll(*launch.tool), "mine");
    EXPECT_EQ(readAll(*kept.tool), "read later");
}

TEST_F(LinuxAuthorizationTest, RunsManyToolsAheadInTheirOrder) {
    const auto authorization = obtained();
    // The first cannot end before somebody writes into the FIFO, so nobody can have waited for it.
    const std::string fifo = folder.addFifo("fifo");
    std::vector<std::unique_ptr<PrivilegedTool>> tools;
    tools.push_back(std::move(authorization->execute("/await", {fifo}).tool));
    for (int index = 0; index < 100; ++index) {
        PrivilegedLaunch launch = authorization->execute("/print", {std::to_string(index)});
        ASSERT_EQ(launch.status, 0);
        tools.push_back(std::move(launch.tool));
    }
    std::ofstream(fifo) << "go\n";
    EXPECT_EQ(readAll(*tools.at(100)), "99");
    EXPECT_EQ(readAll(*tools.at(0)), "go");
    for (int index = 0; index < 100; ++index) {
        tools.at(static_cast<std::size_t>(index) + 1)->waitUntilEnded();
    }
    EXPECT_EQ(readAll(*tools.at(50)), "49");
}

TEST_F(LinuxAuthorizationTest, NoToolThatWasAheadOfALostHelperCountsAsEnded) {
    const auto authorization = obtained();
    const PrivilegedLaunch before = authorization->execute("/print", {"done"});
    const PrivilegedLaunch fatal = authorization->execute("/die", {});
    const PrivilegedLaunch after = authorization->execute("/print", {"never"});
    ASSERT_EQ(after.status, 0);
    for (const PrivilegedLaunch* launch : {&after, &fatal, &before}) {
        launch->tool->waitUntilEnded();
    }
    EXPECT_EQ(before.tool->status(), 0);
    EXPECT_EQ(readAll(*before.tool), "done");
    EXPECT_EQ(fatal.tool->status(), authorization_status::denied);
    EXPECT_EQ(after.tool->status(), authorization_status::denied);
    EXPECT_FALSE(after.tool->hasSucceeded());
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
}

TEST_F(LinuxAuthorizationTest, RunsWhatNobodyWaitedForBeforeItEnds) {
    auto authorization = obtained();
    const std::string fifo = folder.addFifo("fifo");
    const FileDescriptor ends(::open(fifo.c_str(), O_RDWR | O_CLOEXEC));
    static_cast<void>(authorization->execute("/await", {fifo}));
    for (int index = 0; index < 3; ++index) {
        static_cast<void>(authorization->execute("/append", {folder / "notes", "line"}));
    }
    ASSERT_EQ(::write(ends.get(), "go\n", 3), 3);
    authorization.reset();
    EXPECT_EQ(folder.read("notes"), "line\nline\nline\n");
}

TEST_F(LinuxAuthorizationTest, TellsTheSinkOfProgressAndStopsWhenToldTo) {
    CountingSink sink;
    const auto authorization = obtained();
    authorization->setProgressSink(&sink);
    authorization->execute("/progress", {"5", "7"}).tool->waitUntilEnded();
    EXPECT_EQ(sink.bytes, 12U);
    EXPECT_EQ(sink.calls, 2);
    authorization->setProgressSink(nullptr);
    authorization->execute("/progress", {"100"}).tool->waitUntilEnded();
    EXPECT_EQ(sink.bytes, 12U);
}

// Waits that only the sink can end: whoever did not call it would wait for ever.

/// Writes a line into the FIFO when it was told of nothing for the third time.
class FreeingSink : public ProgressSink {
  public:
    explicit FreeingSink(std::string fifo) : fifo_(std::move(fifo)) {
        if (::mkfifo(fifo_.c_str(), 0666) != 0) ADD_FAILURE() << "cannot make " << fifo_;
    }
    void bytesCopied(std::uint64_t bytes) override {
        EXPECT_EQ(bytes, 0U);
        if (++calls < 3 || freed) return;
        // There is a reader when the one who waits has come that far.
        const FileDescriptor writer(::open(fifo_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
        freed = writer && ::write(writer.get(), "go\n", 3) == 3;
    }

    int calls = 0;
    bool freed = false;

  private:
    std::string fifo_;
};

class LinuxAuthorizationProgress : public LinuxAuthorizationTest {
  protected:
    std::unique_ptr<Authorization> obtainedWithSink() {
        auto authorization = obtained();
        authorization->setProgressSink(&sink);
        return authorization;
    }

    std::string fifo = folder / "fifo";
    FreeingSink sink{fifo};
};

TEST_F(LinuxAuthorizationProgress, TheSinkIsNotifiedWhileSomebodyIsAsked) {
    usePkexec("read line < '" + fifo + "'; shift; exec \"$@\"");
    const auto authorization = obtainedWithSink();
    EXPECT_EQ(authorization->execute("/print", {}).status, 0);
    EXPECT_TRUE(sink.freed);
}

TEST_F(LinuxAuthorizationProgress, TheSinkIsNotifiedWhilePkexecEnds) {
    usePkexec("exec <&- >&-; read line < '" + fifo + "'; exit 126");
    const auto authorization = obtainedWithSink();
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::canceled);
    EXPECT_TRUE(sink.freed);
}

TEST_F(LinuxAuthorizationProgress, TheSinkIsNotifiedWhileAToolRuns) {
    const auto authorization = obtainedWithSink();
    const PrivilegedLaunch launch = authorization->execute("/await", {fifo});
    launch.tool->waitUntilEnded();
    EXPECT_TRUE(sink.freed);
    EXPECT_EQ(readAll(*launch.tool), "go");
}

TEST_F(LinuxAuthorizationProgress, TheSinkIsNotifiedWhileAToolsOutputIsAwaited) {
    const auto authorization = obtainedWithSink();
    EXPECT_EQ(readAll(*authorization->execute("/await", {fifo}).tool), "go");
    EXPECT_TRUE(sink.freed);
}

TEST_F(LinuxAuthorizationProgress, TheSinkIsNotifiedWhileAnEarlierToolHoldsUpTheNext) {
    const auto authorization = obtainedWithSink();
    static_cast<void>(authorization->execute("/await", {fifo}));
    authorization->execute("/print", {}).tool->waitUntilEnded();
    EXPECT_TRUE(sink.freed);
}

TEST_F(LinuxAuthorizationProgress, TheSinkIsNotifiedWhileAToolThatNobodyWaitsForFinishes) {
    auto authorization = obtainedWithSink();
    static_cast<void>(authorization->execute("/await", {fifo}));
    authorization.reset();
    EXPECT_TRUE(sink.freed);
}

TEST_F(LinuxAuthorizationTest, RefusesArgumentsThatFitInNoMessageAndGoesOn) {
    const auto authorization = obtained();
    EXPECT_EQ(authorization->execute("/print", std::vector<std::string>(100, "x")).status,
              authorization_status::toolNotExecutable);
    EXPECT_EQ(authorization->execute("/print", {std::string(100000, 'x')}).status,
              authorization_status::toolNotExecutable);
    EXPECT_EQ(authorization->execute("/print", {}).status, 0);
}

// Losing the helper.

TEST_F(LinuxAuthorizationTest, ReportsAndRemembersAHelperThatDiesInTheMiddleOfATool) {
    const auto authorization = obtained();
    EXPECT_EQ(tasks.stringByLaunchingPathWithArguments("/die", {}, *authorization, &error, true),
              std::nullopt);
    EXPECT_EQ(error.value().code, 5531);
    tasks.authorizedLaunchPath("/print", {}, *authorization, &error, true);
    EXPECT_EQ(error.value().code, 5531);
}

TEST_F(LinuxAuthorizationTest, EndsTheOutputOfAToolWhoseHelperDies) {
    const auto authorization = obtained();
    const PrivilegedLaunch launch = authorization->execute("/die", {"last words"});
    ASSERT_EQ(launch.status, 0);
    EXPECT_EQ(readAll(*launch.tool), "last words");
    EXPECT_EQ(launch.tool->status(), authorization_status::denied);
}

TEST_F(LinuxAuthorizationTest, GivesUpAHelperThatSaysWhatIsNoMessage) {
    const auto authorization = obtained();
    authorization->execute("/babble", {}).tool->waitUntilEnded();
    EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
}

TEST_F(LinuxAuthorizationTest, SurvivesTheHelpersDeathBetweenTwoToolsAndStartsNoOther) {
    access.helper.path = script("helper", "echo $$ >> \"$LOG\"; exec " FAKE_HELPER);
    const auto authorization = obtained();
    authorization->execute("/print", {}).tool->waitUntilEnded();
    const pid_t helper = std::stoi(log().at(0));
    ASSERT_EQ(::kill(helper, SIGKILL), 0);
    siginfo_t information{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(helper), &information, WEXITED | WNOWAIT), 0);
    for (int index = 0; index < 2; ++index) {
        EXPECT_EQ(authorization->execute("/print", {}).status, authorization_status::denied);
    }
    EXPECT_EQ(log().size(), 1U);
}

TEST_F(LinuxAuthorizationTest, NobodyCanOpenTheConnectionAgain) {
    access.helper.path = script("helper", "echo $$ >> \"$LOG\"; exec " FAKE_HELPER);
    const auto authorization = obtained();
    ASSERT_EQ(authorization->execute("/print", {}).status, 0);
    for (const std::string stream : {"0", "1"}) {
        const std::string path = "/proc/" + log().at(0) + "/fd/" + stream;
        EXPECT_EQ(::open(path.c_str(), O_RDWR | O_CLOEXEC), -1);
        EXPECT_EQ(errno, ENXIO);
    }
}

// Its end.

TEST_F(LinuxAuthorizationTest, ReapsItsHelperAndNobodyElse) {
    pid_t other = -1;
    char name[] = "true";
    char* arguments[] = {name, nullptr};
    ASSERT_EQ(::posix_spawn(&other, "/bin/true", nullptr, nullptr, arguments, environ), 0);
    access.helper.path = script("helper", "echo $$ >> \"$LOG\"; exec " FAKE_HELPER);
    auto authorization = obtained();
    EXPECT_EQ(authorization->execute("/print", {"unread"}).status, 0);
    const PrivilegedLaunch launch = authorization->execute("/print", {"x"});
    authorization.reset();
    EXPECT_EQ(::kill(std::stoi(log().at(0)), 0), -1) << "the helper is gone and was waited for";
    int status = 0;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
    // A tool that outlives its authorization says that it was lost, and nothing else happens.
    launch.tool->waitUntilEnded();
    EXPECT_EQ(launch.tool->status(), authorization_status::denied);
    EXPECT_EQ(readAll(*launch.tool), "");
}

// With the real helper.

class LinuxAuthorizationWithTheRealHelper : public LinuxAuthorizationTest {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: the helper must run as root";
        access.helper.path = PRIVILEGED_HELPER;
    }

    /// One that may change what lies in the test's folder.
    std::unique_ptr<Authorization> obtained() {
        auto authorization = LinuxAuthorizationTest::obtained();
        WriteGrant grant;
        grant.addFolder(std::filesystem::path(folder.path()).parent_path().string());
        grant.addDestination(folder.path());
        authorization->limitTo(grant);
        return authorization;
    }
};

TEST_F(LinuxAuthorizationWithTheRealHelper, RunsTenThousandCommandsInOneProcess) {
    access.helper.path = script("helper", "echo $$ >> \"$LOG\"; exec " PRIVILEGED_HELPER);
    const auto authorization = obtained();
    folder.add("file", "");
    const std::string file = folder / "file";
    for (int index = 0; index < 10000; ++index) {
        const bool open = index % 2 == 0;
        tasks.authorizedLaunchPath(open ? "/bin/chmod" : "/usr/sbin/chmod",
                                   {"-R", open ? "0775" : "0644", file}, *authorization, &error,
                                   true);
        ASSERT_FALSE(error);
    }
    struct stat status{};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0644U);
    EXPECT_EQ(log().size(), 1U);
}

TEST_F(LinuxAuthorizationWithTheRealHelper, FinishesAToolThatNobodyWaitsFor) {
    folder.add("source/file", std::string(5000000, 'x'));
    const auto authorization = obtained();
    tasks.authorizedLaunchPath("/bin/cp", {"-R", folder / "source", folder / "copy"},
                               *authorization, &error, false);
    EXPECT_FALSE(error);
    tasks.authorizedLaunchPath("/usr/bin/touch", {folder / "copy/after"}, *authorization, &error,
                               true);
    EXPECT_TRUE(folder.holds("copy/after"));
    EXPECT_EQ(std::filesystem::file_size(folder / "copy/file"), 5000000U);
}

TEST_F(LinuxAuthorizationWithTheRealHelper, TellsTheSinkOfEveryByteOfACopy) {
    folder.add("source/file", std::string(5000000, 'x'));
    CountingSink sink;
    const auto authorization = obtained();
    authorization->setProgressSink(&sink);
    tasks.stringByLaunchingPathWithArguments("/bin/cp", {"-R", folder / "source", folder / "copy"},
                                             *authorization, &error, true);
    EXPECT_EQ(sink.bytes, 5000000U);
}

TEST_F(LinuxAuthorizationWithTheRealHelper, TakesAToolThatFailsForALaunchThatSucceeded) {
    const auto authorization = obtained();
    EXPECT_EQ(
        tasks.stringByLaunchingPathWithArguments("/bin/rm", {"-x"}, *authorization, &error, true),
        "");
    EXPECT_FALSE(error);
}

}  // namespace
}  // namespace installer::test

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "install/rights/OneLineTasksWithOutput.h"
#include "linux/process/LinuxChildProcess.h"
#include "linux/process/PollEventLoop.h"
#include "tests/support/ObserverReentrancy.h"

namespace installer {
namespace {

using Pipe = ChildProcess::Pipe;

// The command runner with real programs of the current user.

class LinuxChildProcessUnprivilegedRun : public testing::Test {
  protected:
    std::optional<std::string> run(const std::string& path,
                                   const std::vector<std::string>& arguments) {
        return tasks.stringByLaunchingPathWithArguments(path, arguments, &error);
    }
    std::optional<std::string> shell(const std::string& script) {
        return run("/bin/sh", {"-c", script});
    }

    PollEventLoop loop;
    LinuxChildProcesses processes{loop};
    OneLineTasksWithOutput tasks{processes, loop};
    std::optional<TaskError> error{std::in_place};
};

TEST_F(LinuxChildProcessUnprivilegedRun, GivesTheOutput) {
    EXPECT_EQ(run("/bin/echo", {"one", "two words"}), "one two words\n");
    EXPECT_FALSE(error);
}

TEST_F(LinuxChildProcessUnprivilegedRun, GivesTheOutputTogetherWithAWarning) {
    EXPECT_EQ(shell("printf ok; printf warn >&2"), "ok");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, -2);
    EXPECT_EQ(error->domain, "com.apple.NSTask.OneLineTasksWithOutput");
    EXPECT_EQ(error->userInformation.at("standardError"), "warn");
}

TEST_F(LinuxChildProcessUnprivilegedRun, TakesAFailedToolForASuccess) {
    EXPECT_EQ(shell("exit 3"), "");
    EXPECT_FALSE(error);
    EXPECT_EQ(shell("kill -9 $$"), "");
    EXPECT_FALSE(error);
}

TEST_F(LinuxChildProcessUnprivilegedRun, ReportsAMissingProgram) {
    EXPECT_EQ(run("/nonexistent/tool", {}), std::nullopt);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, -1);
    EXPECT_THAT(error->localizedDescription, testing::HasSubstr("/nonexistent/tool"));
    EXPECT_THAT(error->localizedDescription, testing::HasSubstr("No such file"));
}

TEST_F(LinuxChildProcessUnprivilegedRun, ReportsWhatCannotBeExecuted) {
    EXPECT_EQ(run("/etc/passwd", {}), std::nullopt);
    EXPECT_EQ(error.value().code, -1);
    EXPECT_EQ(run("", {}), std::nullopt);
    EXPECT_EQ(error.value().code, -1);
    EXPECT_EQ(run("/bin/echo", {std::string("a\0b", 3)}), std::nullopt);
    EXPECT_EQ(error.value().code, -1);
}

TEST_F(LinuxChildProcessUnprivilegedRun, ReadsBothPipesAtOnce) {
    const auto result =
        shell("head -c 1048576 /dev/zero | tr '\\0' e >&2; head -c 1048576 /dev/zero | tr '\\0' o");
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, std::string(1048576, 'o'));
    EXPECT_EQ(error.value().userInformation.at("standardError"), std::string(1048576, 'e'));
}

TEST_F(LinuxChildProcessUnprivilegedRun, ReportsOutputThatIsNoText) {
    EXPECT_EQ(shell("printf '\\377'"), std::nullopt);
    EXPECT_EQ(error.value().code, -1);
    EXPECT_EQ(shell("printf ok; printf '\\377' >&2"), std::nullopt);
    EXPECT_EQ(error.value().code, -1);
    EXPECT_EQ(shell("printf '\\303\\244'"), "\u00e4");
    EXPECT_FALSE(error);
}

TEST_F(LinuxChildProcessUnprivilegedRun, GivesTheToolAnEmptyStandardInput) {
    EXPECT_EQ(run("/bin/cat", {}), "");
}

TEST_F(LinuxChildProcessUnprivilegedRun, GivesTheToolNoOtherDescriptor) {
    const int leaked = ::dup2(STDERR_FILENO, 700);
    EXPECT_EQ(shell("for d in /proc/self/fd/*; do test -e $d && echo ${d##*/}; done | grep -x 700"),
              "");
    ::close(leaked);
}

TEST_F(LinuxChildProcessUnprivilegedRun, GivesTheToolDefaultSignals) {
    ::signal(SIGPIPE, SIG_IGN);
    const auto ignored = run("/bin/grep", {"SigIgn", "/proc/self/status"});
    ::signal(SIGPIPE, SIG_DFL);
    ASSERT_TRUE(ignored && ignored->starts_with("SigIgn:\t"));
    // The two above the standard signals belong to the C library; no program may set them.
    EXPECT_EQ(std::stoull(ignored->substr(8), nullptr, 16) & 0x7fffffffU, 0U);
}

TEST_F(LinuxChildProcessUnprivilegedRun, LeavesOtherChildrenToThoseWhoStartedThem) {
    pid_t other = -1;
    char name[] = "true";
    char* arguments[] = {name, nullptr};
    ASSERT_EQ(::posix_spawn(&other, "/bin/true", nullptr, nullptr, arguments, environ), 0);
    EXPECT_EQ(run("/bin/echo", {"x"}), "x\n");
    int status = 0;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
}

TEST_F(LinuxChildProcessUnprivilegedRun, LeavesNoZombieAndNoDescriptor) {
    run("/bin/true", {});
    const int before = ::dup(STDERR_FILENO);
    ::close(before);
    for (int index = 0; index < 20; ++index) run("/bin/true", {});
    const int after = ::dup(STDERR_FILENO);
    ::close(after);
    EXPECT_EQ(before, after);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
}

TEST_F(LinuxChildProcessUnprivilegedRun, EndsWithItsToolEvenWhenAGrandchildHoldsThePipe) {
    // The sleeping process is ended by its own parent's end being noticed: read its number first.
    const auto result = shell("sleep 1000 & echo $!");
    ASSERT_TRUE(result);
    const int sleeper = std::stoi(*result);
    EXPECT_EQ(::kill(sleeper, 0), 0) << "it was still there when the run ended";
    ::kill(sleeper, SIGKILL);
}

TEST_F(LinuxChildProcessUnprivilegedRun, WorksWhenTheStandardDescriptorsAreClosed) {
    const pid_t child = ::fork();
    if (child == 0) {
        for (int descriptor = 0; descriptor < 3; ++descriptor) ::close(descriptor);
        const auto result = shell("printf ok; printf warn >&2");
        const bool good =
            result == "ok" && error && error->userInformation.at("standardError") == "warn";
        ::_exit(good ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

// The notices.

TEST(LinuxChildProcess, HandlesDataBeforeTheEndOfTheSameTurn) {
    PollEventLoop loop;
    LinuxChildProcesses processes(loop);
    const auto process = processes.create("/bin/echo", {"x"});
    std::string order;
    const Subscription ended = process->onTerminated([&] { order += "end"; });
    const Subscription data = process->onDataAvailable(Pipe::standardOutput, [&] {
        order += "data ";
        EXPECT_EQ(process->availableData(Pipe::standardOutput), "x\n");
    });
    ASSERT_FALSE(process->launch());
    // Both are waiting by now, and the loop knows of the end only.
    siginfo_t information{};
    ASSERT_EQ(::waitid(P_ALL, 0, &information, WEXITED | WNOWAIT), 0);
    process->waitForDataAndNotify(Pipe::standardOutput);
    while (order.find("end") == std::string::npos && loop.runOnce()) {
    }
    EXPECT_EQ(order, "data end");
}

TEST(LinuxChildProcess, TellsOfDataOncePerRequest) {
    PollEventLoop loop;
    LinuxChildProcesses processes(loop);
    const auto process = processes.create("/bin/sh", {"-c", "echo x; read line"});
    int notices = 0;
    bool ended = false;
    const Subscription data = process->onDataAvailable(Pipe::standardOutput, [&] { ++notices; });
    const Subscription end = process->onTerminated([&] { ended = true; });
    process->waitForDataAndNotify(Pipe::standardOutput);
    ASSERT_FALSE(process->launch());
    while (!ended && loop.runOnce()) {
    }
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(process->availableData(Pipe::standardOutput), "x\n");
}

TEST(LinuxChildProcess, DoesNotKeepTheLoopSpinningOnAPipeThatWasClosedEarly) {
    PollEventLoop loop;
    LinuxChildProcesses processes(loop);
    const auto process = processes.create("/bin/sh", {"-c", "exec >&- 2>&-; sleep 0.2"});
    int turns = 0;
    bool ended = false;
    const auto readAndAskAgain = [&](Pipe pipe) {
        EXPECT_EQ(process->availableData(pipe), "");
        process->waitForDataAndNotify(pipe);
    };
    const Subscription output = process->onDataAvailable(
        Pipe::standardOutput, [&] { readAndAskAgain(Pipe::standardOutput); });
    const Subscription error = process->onDataAvailable(
        Pipe::standardError, [&] { readAndAskAgain(Pipe::standardError); });
    const Subscription end = process->onTerminated([&] { ended = true; });
    process->waitForDataAndNotify(Pipe::standardOutput);
    process->waitForDataAndNotify(Pipe::standardError);
    ASSERT_FALSE(process->launch());
    while (!ended && loop.runOnce()) ++turns;
    EXPECT_LE(turns, 4);
}

TEST(LinuxChildProcess, MayBeDestroyedByItsOwnHandler) {
    PollEventLoop loop;
    LinuxChildProcesses processes(loop);
    auto process = processes.create("/bin/echo", {"x"});
    const Subscription ended = process->onTerminated([&] { process.reset(); });
    ASSERT_FALSE(process->launch());
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(process, nullptr);
    EXPECT_FALSE(loop.runOnce());
}

TEST(LinuxChildProcess, StopsItsNoticesWhenDestroyed) {
    PollEventLoop loop;
    LinuxChildProcesses processes(loop);
    auto process = processes.create("/bin/true", {});
    ASSERT_FALSE(process->launch());
    process.reset();
    EXPECT_FALSE(loop.runOnce());
    ::waitpid(-1, nullptr, 0);
}

TEST(LinuxChildProcess, IsLaunchedOnce) {
    PollEventLoop loop;
    LinuxChildProcesses processes(loop);
    const auto process = processes.create("/bin/true", {});
    bool ended = false;
    const Subscription end = process->onTerminated([&] { ended = true; });
    ASSERT_FALSE(process->launch());
    EXPECT_TRUE(process->launch());
    while (!ended && loop.runOnce()) {
    }
}

/// The data notices of a program that never stops writing.
class DataNotices {
  public:
    DataNotices() { EXPECT_FALSE(process_->launch()); }
    ~DataNotices() {
        // The closed pipe ends the program.
        process_.reset();
        ::waitpid(-1, nullptr, 0);
    }
    DataNotices(const DataNotices&) = delete;
    DataNotices& operator=(const DataNotices&) = delete;

    Subscription observe(std::function<void()> handler) {
        return process_->onDataAvailable(Pipe::standardOutput, std::move(handler));
    }
    void notify() {
        process_->waitForDataAndNotify(Pipe::standardOutput);
        EXPECT_TRUE(loop_.runOnce());
    }
    void destroy() { process_.reset(); }

  private:
    PollEventLoop loop_;
    LinuxChildProcesses processes_{loop_};
    std::unique_ptr<ChildProcess> process_ = processes_.create("/usr/bin/yes", {});
};

}  // namespace
}  // namespace installer

namespace installer::test {
namespace {

INSTANTIATE_TYPED_TEST_SUITE_P(LinuxChildProcess, ObserverReentrancy, DataNotices);

}  // namespace
}  // namespace installer::test

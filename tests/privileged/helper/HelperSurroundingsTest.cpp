// What the helper was started with, and what happens to it while it works, changes nothing of what
// it does.

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/capability.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <sys/wait.h>

#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// As an ordinary user can before the helper is started: the hard limit stays.
void setSoftLimit(int resource, rlim_t value) {
    rlimit limit{};
    if (::getrlimit(static_cast<__rlimit_resource_t>(resource), &limit) != 0) ::_exit(98);
    limit.rlim_cur = value;
    if (::setrlimit(static_cast<__rlimit_resource_t>(resource), &limit) != 0) ::_exit(98);
}

void setBothLimits(int resource, rlim_t value) {
    const rlimit limit{value, value};
    if (::setrlimit(static_cast<__rlimit_resource_t>(resource), &limit) != 0) ::_exit(98);
}

mode_t modeOf(const std::string& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

class HelperSurroundings : public PrivilegedHelperProgram {
  protected:
    std::optional<std::uint32_t> copy(HelperProcess& helper) {
        return helper.run("/bin/cp", {"-R", folder / "source", folder / "to/copy"});
    }
    [[nodiscard]] std::vector<std::string> namesIn(const std::string& name) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder / name)) {
            names.push_back(entry.path().filename());
        }
        return names;
    }
};

// Limits.

TEST_F(HelperSurroundings, ALimitOfAFilesSizeDoesNotCutACopy) {
    folder.add("source", std::string(100'000, 'x'));
    folder.add("to/other", "");
    HelperProcess helper(afterDoing([] { setSoftLimit(RLIMIT_FSIZE, 4096); }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(copy(helper), 0U);
    EXPECT_EQ(contentsOf(folder / "to/copy").size(), 100'000U);
}

TEST_F(HelperSurroundings, ALimitThatRootItselfMayNotRaiseFailsTheCopyAndNothingElse) {
    folder.add("source", std::string(100'000, 'x'));
    folder.add("to/other", "");
    HelperProcess helper(afterDoing([] {
        setBothLimits(RLIMIT_FSIZE, 4096);
        if (::prctl(PR_CAPBSET_DROP, CAP_SYS_RESOURCE, 0, 0, 0) != 0) ::_exit(98);
    }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(copy(helper), 1U);
    EXPECT_EQ(namesIn("to"), std::vector<std::string>{"other"});
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "to/next"}), 0U);
}

TEST_F(HelperSurroundings, FewDescriptorsAreEnoughToStartWith) {
    std::string deep = "source";
    for (int depth = 0; depth < 30; ++depth) deep += "/inner";
    folder.add(deep + "/file", "contents");
    folder.add("to/other", "");
    HelperProcess helper(afterDoing([] {
        // Whoever runs the tests may have left some open below the program's own; the loader
        // needs one.
        ::close_range(3, 499, 0);
        setSoftLimit(RLIMIT_NOFILE, 4);
    }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(copy(helper), 0U);
}

TEST_F(HelperSurroundings, AFullTableOfDescriptorsIsEmptied) {
    folder.add("source", "contents");
    folder.add("to/other", "");
    HelperProcess helper(afterDoing([] {
        setSoftLimit(RLIMIT_NOFILE, 700);
        while (::dup(STDIN_FILENO) >= 0) {
        }
    }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(copy(helper), 0U);
}

TEST_F(HelperSurroundings, NoLimitIsLeftThatCouldEndItAndNoCrashWouldLeaveWhatRootHasRead) {
    HelperProcess helper(afterDoing([] {
        // Large enough for the start of any build of the helper.
        for (const int resource : {RLIMIT_AS, RLIMIT_DATA})
            setSoftLimit(resource, rlim_t{1} << 46U);
        setSoftLimit(RLIMIT_CPU, 1000);
    }));
    ASSERT_TRUE(helper.saysHello());
    const std::string limits = contentsOf(procFile(helper, "limits"));
    for (const char* name : {"cpu time", "file size", "data size", "stack size", "address space"}) {
        EXPECT_THAT(limits, ContainsRegex(std::string("Max ") + name + " +unlimited"));
    }
    EXPECT_THAT(limits, ContainsRegex("Max core file size +0 +0"));
}

// Signals.

TEST_F(HelperSurroundings, ATimerThatItWasStartedWithDoesNotEndIt) {
    constexpr std::chrono::seconds time(1);
    HelperProcess helper(afterDoing([] {
        const itimerval timer{{}, {1, 0}};
        ::setitimer(ITIMER_REAL, &timer, nullptr);
    }));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(helper.saysHello());
    while (std::chrono::steady_clock::now() < start + time + time / 10) {
        ASSERT_EQ(helper.run("/usr/bin/touch", {folder / "made"}), 0U);
    }
}

TEST_F(HelperSurroundings, SignalsThatWereIgnoredEndItAgain) {
    HelperProcess helper(afterDoing([] {
        for (int number = 1; number <= SIGRTMAX; ++number) ::signal(number, SIG_IGN);
    }));
    ASSERT_TRUE(helper.saysHello());
    ASSERT_EQ(::kill(helper.process(), SIGTERM), 0);
    EXPECT_EQ(helper.exitStatus(), -SIGTERM);
}

class HelperSurroundingsSignalDuringACopy : public HelperSurroundings,
                                            public testing::WithParamInterface<int> {
  protected:
    /// Asks for the copy and stops the helper in the middle of it; false when it was too fast.
    bool stopInTheMiddle(HelperProcess& helper) {
        const ToolRequest request{"/bin/cp", {"-R", folder / "source", folder / "to/copy"}};
        if (!helper.sendBytes(encodedRequest(request).value())) return false;
        const std::optional<Message> message = helper.stream().receive();
        if (!message || !progressBytes(*message)) return false;
        ::kill(helper.process(), SIGSTOP);
        ::waitpid(helper.process(), nullptr, WUNTRACED);
        return !folder.holds("to/copy");
    }

    void goOnAndEndTheCopy(HelperProcess& helper) {
        ::kill(helper.process(), SIGCONT);
        while (const std::optional<Message> message = helper.stream().receive()) {
            if (exitStatus(*message)) return;
        }
    }
};

TEST_P(HelperSurroundingsSignalDuringACopy, WaitsForTheEndOfTheCopy) {
    constexpr std::size_t size = 32 * mebibyte;
    folder.add("source", std::string(size, 'x'));
    folder.add("to/other", "");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    while (!stopInTheMiddle(helper)) {
        goOnAndEndTheCopy(helper);
        ASSERT_EQ(helper.run("/bin/rm", {"-fR", folder / "to/copy"}), 0U);
    }
    ASSERT_EQ(::kill(helper.process(), GetParam()), 0);
    goOnAndEndTheCopy(helper);
    EXPECT_EQ(helper.exitStatus(), -GetParam());
    EXPECT_EQ(std::filesystem::file_size(folder / "to/copy"), size);
    EXPECT_THAT(namesIn("to"), testing::UnorderedElementsAre("copy", "other"));
}

INSTANTIATE_TEST_SUITE_P(Signals, HelperSurroundingsSignalDuringACopy,
                         testing::Values(SIGTERM, SIGALRM, SIGUSR1),
                         [](const auto& row) { return std::string(sigabbrev_np(row.param)); });

TEST_F(HelperSurroundings, ASignalEndsItWhileItWaitsForAPeerThatDoesNotRead) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const std::string request = encodedRequest({"/usr/bin/touch", {folder / "made"}}).value();
    const int connection = helper.connection();
    pollfd polled{connection, POLLOUT, 0};
    // Until its answers fill the connection it takes requests.
    while (::poll(&polled, 1, 200) > 0) {
        static_cast<void>(!::send(connection, request.data(), request.size(), MSG_DONTWAIT));
    }
    ASSERT_EQ(::kill(helper.process(), SIGTERM), 0);
    EXPECT_EQ(helper.exitStatus(), -SIGTERM);
}

// The rest of its surroundings.

TEST_F(HelperSurroundings, AMaskOfEverythingAndAWorkingFolderThatIsGoneChangeNothing) {
    const std::string gone = folder / "gone";
    HelperProcess helper(afterDoing([gone] {
        ::umask(0777);
        if (::mkdir(gone.c_str(), 0700) != 0 || ::chdir(gone.c_str()) != 0 ||
            ::rmdir(gone.c_str()) != 0) {
            ::_exit(98);
        }
    }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "file"}), 0U);
    EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", folder / "a/b"}), 0U);
    EXPECT_EQ(modeOf(folder / "file"), 0644U);
    EXPECT_EQ(modeOf(folder / "a"), 0755U);
    EXPECT_EQ(modeOf(folder / "a/b"), 0775U);
}

TEST_F(HelperSurroundings, AHugeEnvironmentLeavesNothing) {
    std::vector<std::string> environment{"GCONV_PATH=/tmp", "LOCPATH=/tmp", "PKEXEC_UID=65534"};
    for (int index = 0; index < 10; ++index) {
        environment.push_back("V" + std::to_string(index) + "=" + std::string(100'000, 'x'));
    }
    HelperProcess helper(
        {.environment = environment, .arguments = {"--started-by", "polkit"}, .before = {}});
    ASSERT_TRUE(helper.saysHello());
    const std::string left = contentsOf(procFile(helper, "environ"));
    EXPECT_EQ(left.find_first_not_of('\0'), std::string::npos);
    folder.add("file", "");
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", "nobody:admin", folder / "file"}), 0U);
}

TEST_F(HelperSurroundings, WithoutStandardOutputItsAnswersGoNowhere) {
    HelperProcess helper(afterDoing([] { ::close(STDOUT_FILENO); }));
    const ToolRequest request{"/usr/bin/touch", {folder / "made"}};
    ASSERT_TRUE(helper.sendBytes(encodedGrant(everyFolder()) + encodedRequest(request).value()));
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
    EXPECT_TRUE(folder.holds("made"));
}

// Connections of other kinds. Whatever it reads there, it ends.

struct Input {
    const char* name;
    /// Opens it, with what the file holds in it where it can hold something.
    std::function<FileDescriptor(const std::string& file)> open;
    int exitStatus;
};
void PrintTo(const Input& row, std::ostream* out) {
    *out << row.name;
}

class HelperSurroundingsStandardInput : public HelperSurroundings,
                                        public testing::WithParamInterface<Input> {};

TEST_P(HelperSurroundingsStandardInput, IsReadToItsEndWhenItIsNoSocket) {
    folder.add("canary", "alive");
    const std::string removal = encodedRequest({"/bin/rm", {"-fR", folder / "canary"}}).value();
    folder.add("cut short", removal.substr(0, removal.size() - 1));
    const FileDescriptor input = GetParam().open(folder / "cut short");
    ASSERT_TRUE(input);
    HelperProcess helper(afterDoing([&input] {
        if (::dup2(input.get(), STDIN_FILENO) < 0) ::_exit(98);
    }));
    EXPECT_EQ(helper.exitStatus(), GetParam().exitStatus);
    EXPECT_TRUE(folder.holds("canary"));
}

std::function<FileDescriptor(const std::string&)> openPath(const char* path, int flags) {
    return [path, flags](const std::string&) {
        return FileDescriptor(::open(path, flags | O_CLOEXEC));
    };
}

FileDescriptor filledReadingEnd(const std::array<int, 2>& ends, const std::string& file) {
    const std::string bytes = contentsOf(file);
    static_cast<void>(!::write(ends[1], bytes.data(), bytes.size()));
    ::close(ends[1]);
    return FileDescriptor(ends[0]);
}

FileDescriptor openFifo(const std::string& file) {
    std::array<int, 2> ends{};
    return ::pipe2(ends.data(), O_CLOEXEC) == 0 ? filledReadingEnd(ends, file) : FileDescriptor();
}

FileDescriptor openPackets(const std::string& file) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
    return filledReadingEnd(ends, file);
}

FileDescriptor openTerminal(const std::string& /*file*/) {
    // What is typed is gone when the other end closes.
    static FileDescriptor screen;
    screen.reset(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!screen || ::grantpt(screen.get()) != 0 || ::unlockpt(screen.get()) != 0) return {};
    constexpr std::string_view typed = "rm -fR /\n";
    FileDescriptor keyboard(::open(::ptsname(screen.get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    static_cast<void>(!::write(screen.get(), typed.data(), typed.size()));
    return keyboard;
}

FileDescriptor openListeningSocket(const std::string& /*file*/) {
    FileDescriptor made(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un unnamed{AF_UNIX, {}};
    const auto* address = reinterpret_cast<const sockaddr*>(&unnamed);
    if (::bind(made.get(), address, sizeof(sa_family_t)) != 0 || ::listen(made.get(), 1) != 0) {
        return {};
    }
    return made;
}

FileDescriptor openFile(const std::string& file) {
    return FileDescriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, HelperSurroundingsStandardInput,
    testing::Values(Input{"file", openFile, 1},
                    Input{"emptyFile", openPath("/dev/null", O_RDONLY), 0},
                    Input{"writeOnlyFile", openPath("/dev/null", O_WRONLY), 1},
                    Input{"endlessZeros", openPath("/dev/zero", O_RDONLY), 1},
                    Input{"endlessNoise", openPath("/dev/urandom", O_RDONLY), 1},
                    Input{"folder", openPath("/", O_RDONLY), 1}, Input{"fifo", openFifo, 1},
                    Input{"terminal", openTerminal, 1}, Input{"packets", openPackets, 1},
                    Input{"listeningSocket", openListeningSocket, 1}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace installer::test

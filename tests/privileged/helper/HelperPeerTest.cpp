// Peers that ask too much, read too little, or die.

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

using HelperPeer = PrivilegedHelperProgram;

/// What of the helper's memory is in use, in KiB.
long residentSize(const HelperProcess& helper) {
    std::ifstream status(procFile(helper, "status"));
    std::string word;
    while (status >> word && word != "VmRSS:") {
    }
    long size = 0;
    status >> size;
    return size;
}

/// Sends as much as the connection takes until the helper takes no more, and counts. -1 if the
/// helper has ended.
int flood(HelperProcess& helper, const std::string& request) {
    int sent = 0;
    std::string rest;
    pollfd polled{helper.connection(), POLLOUT, 0};
    while (::poll(&polled, 1, 300) > 0) {
        if (rest.empty()) {
            rest = request;
            ++sent;
        }
        const ssize_t count =
            ::send(helper.connection(), rest.data(), rest.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0 && errno != EAGAIN) return -1;
        if (count > 0) rest.erase(0, static_cast<std::size_t>(count));
    }
    // The last one is cut short; the helper must read on for the rest of it.
    const std::string cut = rest;
    std::size_t answers = 0;
    while (!rest.empty() && answers < 1000) {
        if (!helper.stream().receive()) return -1;
        ++answers;
        const ssize_t count =
            ::send(helper.connection(), rest.data(), rest.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count > 0) rest.erase(0, static_cast<std::size_t>(count));
    }
    return sent - static_cast<int>(answers);
}

class HelperPeerFlood : public HelperPeer, public testing::WithParamInterface<std::size_t> {};

TEST_P(HelperPeerFlood, IsHeldBackAndAnsweredToTheLastRequest) {
    // Else a sanitizer keeps everything that was given back.
    HelperProcess helper(
        withEnvironment({"ASAN_OPTIONS=quarantine_size_mb=1:thread_local_quarantine_size_kb=64"}));
    ASSERT_TRUE(helper.saysHello());
    ASSERT_EQ(helper.run("/usr/bin/touch", {folder / "first"}), 0U);
    const long before = residentSize(helper);
    const ToolRequest request{"/usr/bin/touch", {folder / std::string(GetParam(), 'x')}};
    const int unanswered = flood(helper, encodedRequest(request).value());
    ASSERT_GT(unanswered, 0);
    EXPECT_LT(residentSize(helper) - before, 8 << 10) << "KiB";
    for (int index = 0; index < unanswered; ++index) {
        const std::optional<Message> message = helper.stream().receive();
        ASSERT_TRUE(message) << index;
        EXPECT_TRUE(exitStatus(*message));
    }
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "last"}), 0U);
}

TEST_P(HelperPeerFlood, EndsTheHelperWhenThePeerClosesTheConnection) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const ToolRequest request{"/usr/bin/touch", {folder / std::string(GetParam(), 'x')}};
    ASSERT_GT(flood(helper, encodedRequest(request).value()), 0);
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
}

INSTANTIATE_TEST_SUITE_P(LengthsOfNames, HelperPeerFlood, testing::Values(10, 60'000));

/// As sudo starts the helper where it logs what its programs write.
HelperProcess::Start withStreamsThatDoNotBlock() {
    return afterDoing([] {
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO}) {
            if (::fcntl(descriptor, F_SETFL, O_RDWR | O_NONBLOCK) != 0) ::_exit(98);
        }
    });
}

bool isAsleepOrEnded(const HelperProcess& helper) {
    const std::string status = contentsOf(procFile(helper, "status"));
    return status.find("State:\tS") != std::string::npos ||
           status.find("State:\tZ") != std::string::npos;
}

TEST_F(HelperPeer, IsAwaitedWhenItIsSlowToAskOnANonBlockingStream) {
    HelperProcess helper(withStreamsThatDoNotBlock());
    ASSERT_TRUE(helper.saysHello());
    while (!isAsleepOrEnded(helper)) ::sched_yield();
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "made"}), 0U);
    EXPECT_TRUE(folder.holds("made"));
}

TEST_F(HelperPeer, IsAwaitedWhenItIsSlowToReadOnANonBlockingStream) {
    HelperProcess helper(withStreamsThatDoNotBlock());
    ASSERT_TRUE(helper.saysHello());
    const int unanswered =
        flood(helper, encodedRequest({"/usr/bin/touch", {folder / "made"}}).value());
    ASSERT_GT(unanswered, 0);
    while (!isAsleepOrEnded(helper)) ::sched_yield();
    for (int index = 0; index < unanswered; ++index) {
        ASSERT_TRUE(helper.stream().receive()) << index;
    }
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "last"}), 0U);
}

TEST_F(HelperPeer, ReportsThatNobodyReadsDoNotStopTheHelper) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    // More than any pipe holds, and the peer that would read them waits for an answer.
    for (int index = 0; index < 1500; ++index) {
        ASSERT_EQ(helper.run("/bin/sh", {std::string(200, 'x')}), 126U) << index;
    }
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "made"}), 0U);
}

TEST_F(HelperPeer, AReportThatAlmostFillsItsPipeDoesNotStopTheHelper) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const std::vector<std::string> arguments(15, std::string(200, '\n'));
    for (int index = 0; index < 40; ++index) {
        ASSERT_EQ(helper.run("/bin/sh", arguments), 126U) << index;
    }
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
}

// Killed peers.

struct Phase {
    const char* name;
    /// What the peer does before it is killed; false when it could not.
    std::function<bool(HelperProcess&, const std::string& folder)> reach;
};
void PrintTo(const Phase& row, std::ostream* out) {
    *out << row.name;
}

std::string copyRequest(const std::string& folder) {
    const ToolRequest request{"/bin/cp", {"-R", folder + "/source", folder + "/to/copy"}};
    return encodedRequest(request).value();
}

class HelperPeerThatIsKilled : public HelperPeer, public testing::WithParamInterface<Phase> {
  protected:
    /// Starts a helper from a process of its own, which is killed when it has reached the phase.
    /// Gives a descriptor that tells of the helper's end.
    FileDescriptor helperOfAKilledPeer() {
        std::array<int, 2> pipe{};
        if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return {};
        const pid_t peer = ::fork();
        if (peer == 0) {
            HelperProcess helper;
            const bool reached = GetParam().reach(helper, folder.path());
            const pid_t number = reached ? helper.process() : -1;
            static_cast<void>(!::write(pipe[1], &number, sizeof number));
            ::pause();
        }
        pid_t number = -1;
        static_cast<void>(!::read(pipe[0], &number, sizeof number));
        FileDescriptor end(number > 0 ? static_cast<int>(::syscall(SYS_pidfd_open, number, 0))
                                      : -1);
        ::kill(peer, SIGKILL);
        ::waitpid(peer, nullptr, 0);
        ::close(pipe[0]);
        ::close(pipe[1]);
        return end;
    }
};

TEST_P(HelperPeerThatIsKilled, EndsTheHelperAndLeavesNothingHalfDone) {
    folder.add("source/first", std::string(std::size_t{4} << 20U, 'x'));
    folder.add("source/second", "contents");
    folder.add("to/canary", "alive");
    const FileDescriptor end = helperOfAKilledPeer();
    ASSERT_TRUE(end);
    pollfd polled{end.get(), POLLIN, 0};
    EXPECT_EQ(::poll(&polled, 1, 60'000), 1);
    EXPECT_EQ(contentsOf(folder / "to/canary"), "alive");
    for (const auto& entry : std::filesystem::directory_iterator(folder / "to")) {
        if (entry.path().filename() == "canary") continue;
        EXPECT_EQ(entry.path().filename(), "copy") << "no temporary is left";
        EXPECT_EQ(contentsOf(folder / "to/copy/second"), "contents");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Phases, HelperPeerThatIsKilled,
    testing::Values(
        Phase{"beforeItReadsTheHello", [](HelperProcess&, const std::string&) { return true; }},
        Phase{"betweenTwoRequests",
              [](HelperProcess& helper, const std::string&) { return helper.saysHello(); }},
        Phase{"withinARequest",
              [](HelperProcess& helper, const std::string& folder) {
                  const std::string removal =
                      encodedRequest({"/bin/rm", {"-fR", folder + "/to/canary"}}).value();
                  return helper.saysHello() &&
                         helper.sendBytes(std::string_view(removal).substr(0, removal.size() - 1));
              }},
        Phase{"afterARequest",
              [](HelperProcess& helper, const std::string& folder) {
                  return helper.saysHello() && helper.sendBytes(copyRequest(folder));
              }},
        Phase{"duringACopy",
              [](HelperProcess& helper, const std::string& folder) {
                  if (!helper.saysHello() || !helper.sendBytes(copyRequest(folder))) return false;
                  const auto message = helper.stream().receive();
                  return message && progressBytes(*message);
              }},
        Phase{"withAnswersThatItHasNotRead",
              [](HelperProcess& helper, const std::string& folder) {
                  const std::string request =
                      encodedRequest({"/usr/bin/touch", {folder + "/source/made"}}).value();
                  return helper.saysHello() && flood(helper, request) > 0;
              }}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace installer::test

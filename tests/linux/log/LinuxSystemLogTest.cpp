#include <algorithm>
#include <array>
#include <csignal>
#include <optional>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "linux/log/LinuxSystemLog.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// What the system's log daemon would receive.
class Daemon {
  public:
    explicit Daemon(const std::string& path)
        : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), address.sun_path);
        EXPECT_EQ(
            ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

    std::optional<std::string> receive() {
        std::array<char, 20'000> buffer{};
        const ssize_t count = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
        if (count < 0) return std::nullopt;
        return std::string(buffer.data(), static_cast<std::size_t>(count));
    }

  private:
    FileDescriptor socket_;
};

/// Puts something else in the place of standard error for a while.
class StandardErrorReplaced {
  public:
    explicit StandardErrorReplaced(int descriptor) : before_(::dup(STDERR_FILENO)) {
        if (descriptor < 0)
            ::close(STDERR_FILENO);
        else
            ::dup2(descriptor, STDERR_FILENO);
    }
    StandardErrorReplaced(const StandardErrorReplaced&) = delete;
    StandardErrorReplaced& operator=(const StandardErrorReplaced&) = delete;
    ~StandardErrorReplaced() {
        ::dup2(before_, STDERR_FILENO);
        ::close(before_);
    }

  private:
    int before_;
};

class LinuxSystemLogTest : public testing::Test {
  protected:
    std::string socketPath() const { return disk_.at("log"); }

    ScratchFolder disk_;
};

TEST_F(LinuxSystemLogTest, WritesALineToStandardErrorAndToTheDaemon) {
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    testing::internal::CaptureStderr();
    log.log("Found path file /a");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Found path file /a\n");
    const auto message = daemon.receive();
    ASSERT_TRUE(message);
    EXPECT_THAT(*message, StartsWith("<13>"));
    EXPECT_THAT(*message, HasSubstr(" Installer[" + std::to_string(::getpid()) + "]: "));
    EXPECT_THAT(*message, EndsWith(": Found path file /a"));
    EXPECT_FALSE(daemon.receive());
}

TEST_F(LinuxSystemLogTest, AFileNameCannotForgeALine) {
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    testing::internal::CaptureStderr();
    log.log("removing a\nAll is well\x1B[2J caf\xE9");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "removing a\\nAll is well\\x1b[2J caf\\xe9\n");
    EXPECT_THAT(daemon.receive().value_or(""), EndsWith("a\\nAll is well\\x1b[2J caf\\xe9"));
}

TEST_F(LinuxSystemLogTest, ALineFeedAtTheEndIsTheEndOfTheLine) {
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    testing::internal::CaptureStderr();
    log.log("terminated Photoshop\n");
    log.log("two\n\n");
    log.log("\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "terminated Photoshop\ntwo\\n\n\n");
    EXPECT_THAT(daemon.receive().value_or(""), EndsWith(": terminated Photoshop"));
}

TEST_F(LinuxSystemLogTest, WritesEachLineInOneCall) {
    std::array<int, 2> ends{};
    // A packet pipe keeps the boundaries of the writes.
    ASSERT_EQ(::pipe2(ends.data(), O_DIRECT | O_CLOEXEC), 0);
    {
        const StandardErrorReplaced replaced(ends[1]);
        LinuxSystemLog log("Installer", socketPath());
        log.log("first");
        log.log("second");
    }
    std::array<char, 100> buffer{};
    const ssize_t count = ::read(ends[0], buffer.data(), buffer.size());
    EXPECT_EQ(std::string(buffer.data(), static_cast<std::size_t>(count)), "first\n");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(LinuxSystemLogTest, GoesOnWithoutStandardError) {
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    {
        const StandardErrorReplaced replaced(-1);
        log.log("still told");
    }
    EXPECT_THAT(daemon.receive().value_or(""), EndsWith("still told"));
}

TEST_F(LinuxSystemLogTest, GoesOnWhenNobodyReadsStandardErrorAnyMore) {
    auto* before = std::signal(SIGPIPE, SIG_IGN);
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    {
        const StandardErrorReplaced replaced(ends[1]);
        log.log("still told");
    }
    ::close(ends[1]);
    EXPECT_THAT(daemon.receive().value_or(""), EndsWith("still told"));
    std::signal(SIGPIPE, before);
}

TEST_F(LinuxSystemLogTest, WithoutADaemonStandardErrorIsEnough) {
    LinuxSystemLog log("Installer", disk_.at("none"));
    testing::internal::CaptureStderr();
    log.log("a line");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a line\n");
}

TEST_F(LinuxSystemLogTest, FindsADaemonThatWasStartedAnew) {
    auto first = std::make_unique<Daemon>(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    first.reset();
    std::filesystem::remove(socketPath());
    Daemon second(socketPath());
    testing::internal::CaptureStderr();
    log.log("after the restart");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "after the restart\n");
    EXPECT_THAT(second.receive().value_or(""), EndsWith("after the restart"));
}

TEST_F(LinuxSystemLogTest, ADaemonThatDoesNotReadIsGivenUp) {
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    testing::internal::CaptureStderr();
    constexpr int lines = 5000;  // more than any queue of a datagram socket holds
    for (int line = 0; line < lines; ++line) log.log("line");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), lines);
    EXPECT_TRUE(daemon.receive());
}

TEST_F(LinuxSystemLogTest, ALongLineIsCutForTheDaemonBetweenTwoCharacters) {
    Daemon daemon(socketPath());
    LinuxSystemLog log("Installer", socketPath());
    std::string line = "x";
    for (int index = 0; index < 100'000; ++index) line += "\xC3\xA4";
    testing::internal::CaptureStderr();
    log.log(line);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + "\n");
    const std::string message = daemon.receive().value_or("");
    EXPECT_LT(message.size(), 9000u);
    EXPECT_GT(message.size(), 8000u);
    EXPECT_THAT(message, EndsWith("\xC3\xA4"));
}

}  // namespace
}  // namespace installer::test

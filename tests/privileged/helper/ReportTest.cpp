#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include "privileged/helper/Report.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

struct Pipe {
    Pipe() {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
        reading.reset(ends[0]);
        writing.reset(ends[1]);
    }
    FileDescriptor reading;
    FileDescriptor writing;
};

/// What stands on standard error when the work is done. No more than a pipe takes.
std::string standardErrorOf(const std::function<void()>& work) {
    return inChild([&] {
        const Pipe pipe;
        dup2(pipe.writing.get(), STDERR_FILENO);
        work();
        fcntl(pipe.reading.get(), F_SETFL, O_NONBLOCK);
        std::string text(65536, '\0');
        const ssize_t count = read(pipe.reading.get(), text.data(), text.size());
        return text.substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    });
}

TEST(Report, IsOneHarmlessLineOnStandardError) {
    EXPECT_EQ(standardErrorOf([] { report("refused: a\nforged\x1b[2J"); }),
              "privileged-helper: refused: a\\nforged\\x1b[2J\n");
}

TEST(Report, IsCutSoThatItFitsIntoAPipeThatTakesSomething) {
    const std::string text = standardErrorOf([] { report(std::string(60'000, '\n')); });
    EXPECT_LE(text.size(), std::size_t{PIPE_BUF});
    EXPECT_GT(text.size(), std::size_t{PIPE_BUF} / 2);
    EXPECT_THAT(text, EndsWith("\\n\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 1);
}

/// The process's standard error is a pipe that takes nothing more.
void fillStandardError(const Pipe& pipe) {
    dup2(pipe.writing.get(), STDERR_FILENO);
    fcntl(STDERR_FILENO, F_SETFL, O_NONBLOCK);
    while (write(STDERR_FILENO, "x", 1) == 1) {
    }
    fcntl(STDERR_FILENO, F_SETFL, 0);
}

TEST(Report, IsDroppedWhereNobodyReads) {
    EXPECT_EQ(inChild([] {
                  const Pipe pipe;
                  fillStandardError(pipe);
                  report("a line");
                  return std::string("did not wait");
              }),
              "did not wait");
}

// A write would end the process by a signal.
TEST(Report, IsDroppedWhereItsReaderHasGone) {
    EXPECT_EQ(inChild([] {
                  Pipe pipe;
                  fillStandardError(pipe);
                  pipe.reading.reset();
                  report("a line");
                  return std::string("alive");
              }),
              "alive");
}

/// What the system's log is told in the work, and what stands on standard error.
std::string toldTheLog(const std::function<void()>& work) {
    return inChild([&]() -> std::string {
        const Pipe pipe;
        dup2(pipe.writing.get(), STDERR_FILENO);
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", "/dev", "tmpfs", 0, "size=1m,mode=0755") != 0) {
            return "no log of its own";
        }
        const FileDescriptor log(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::string("/dev/log").copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(log.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            return "no socket";
        }
        closelog();
        work();
        std::string told(8192, '\0');
        const ssize_t count = recv(log.get(), told.data(), told.size(), 0);
        told.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        pollfd polled{pipe.reading.get(), POLLIN, 0};
        return told + (poll(&polled, 1, 0) > 0 ? " and standard error" : "");
    });
}

TEST(Report, StandsInTheLogOfWhatConcernsSecurityToo) {
    const std::string told = toldTheLog([] { report("refused: a\nb"); });
    EXPECT_THAT(told, StartsWith("<" + std::to_string(LOG_AUTHPRIV | LOG_NOTICE) + ">"));
    EXPECT_THAT(told, EndsWith("privileged-helper: refused: a\\nb and standard error"));
}

TEST(ReportNote, StandsInTheLogAlone) {
    const std::string told = toldTheLog([] { note("changes files below /a\nb"); });
    EXPECT_THAT(told, StartsWith("<" + std::to_string(LOG_AUTHPRIV | LOG_NOTICE) + ">"));
    EXPECT_THAT(told, EndsWith("privileged-helper: changes files below /a\\nb"));
}

}  // namespace
}  // namespace installer::test

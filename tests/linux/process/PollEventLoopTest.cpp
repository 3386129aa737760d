#include <array>
#include <optional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "linux/process/PollEventLoop.h"
#include "privileged/system/FileDescriptor.h"

namespace installer::test {
namespace {

struct PipeEnds {
    PipeEnds() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
        reading.reset(ends[0]);
        writing.reset(ends[1]);
    }
    void write() const { static_cast<void>(!::write(writing.get(), "x", 1)); }
    void read() const {
        char byte = 0;
        static_cast<void>(!::read(reading.get(), &byte, 1));
    }
    FileDescriptor reading;
    FileDescriptor writing;
};

TEST(PollEventLoop, ReportsAtOnceThatItHasNoSource) {
    PollEventLoop loop;
    EXPECT_FALSE(loop.runOnce());
}

TEST(PollEventLoop, WithoutSourcesTurnsWithoutAnySystemCall) {
    PollEventLoop loop;
    // A sanitizer asks the system once about what it has not met yet.
    loop.runUntilNow();
    const pid_t child = ::fork();
    if (child == 0) {
        // From here on, anything but read, write and exit kills the process.
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT);
        loop.runUntilNow();
        ::syscall(SYS_exit, 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
}

TEST(PollEventLoop, RunUntilNowHandlesWhatIsThereAndDoesNotWait) {
    PollEventLoop loop;
    PipeEnds pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading.get(), [&] {
        ++calls;
        pipe.read();
    });
    loop.runUntilNow();
    EXPECT_EQ(calls, 0);
    pipe.write();
    loop.runUntilNow();
    EXPECT_EQ(calls, 1);
}

TEST(PollEventLoop, RunOnceWaitsForASource) {
    PollEventLoop loop;
    PipeEnds pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading.get(), [&] { ++calls; });
    std::thread writer([&] { pipe.write(); });
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(calls, 1);
    writer.join();
}

TEST(PollEventLoop, TellsOfAClosedPeer) {
    PollEventLoop loop;
    PipeEnds pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading.get(), [&] { ++calls; });
    pipe.writing.reset();
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(calls, 1);
}

TEST(PollEventLoop, CallsReadySourcesInTheOrderInWhichTheyWereAdded) {
    PollEventLoop loop;
    PipeEnds first;
    PipeEnds second;
    std::string order;
    const Subscription one = loop.watch(second.reading.get(), [&] { order += "1"; });
    const Subscription two = loop.watch(first.reading.get(), [&] { order += "2"; });
    first.write();
    second.write();
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(order, "12");
}

TEST(PollEventLoop, DoesNotCallASourceThatAnEarlierOneRemovedInTheSameTurn) {
    PollEventLoop loop;
    PipeEnds first;
    PipeEnds second;
    int calls = 0;
    Subscription two;
    const Subscription one = loop.watch(first.reading.get(), [&] { two.cancel(); });
    two = loop.watch(second.reading.get(), [&] { ++calls; });
    first.write();
    second.write();
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(calls, 0);
}

TEST(PollEventLoop, LetsASourceRemoveItself) {
    PollEventLoop loop;
    PipeEnds pipe;
    Subscription watched;
    std::string seen;
    watched = loop.watch(pipe.reading.get(), [&watched, &seen, text = std::string(100, 'x')] {
        watched.cancel();
        seen = text;
    });
    pipe.write();
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(seen, std::string(100, 'x'));
    EXPECT_FALSE(loop.runOnce());
}

TEST(PollEventLoop, CanBeTurnedFromWithinACallback) {
    PollEventLoop loop;
    PipeEnds outer;
    PipeEnds inner;
    int calls = 0;
    const Subscription one = loop.watch(outer.reading.get(), [&] {
        outer.read();
        EXPECT_TRUE(loop.runOnce());
    });
    const Subscription two = loop.watch(inner.reading.get(), [&] {
        inner.read();
        ++calls;
    });
    outer.write();
    inner.write();
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(calls, 1);
}

TEST(PollEventLoop, MayBeGoneBeforeItsHandles) {
    std::optional<PollEventLoop> loop(std::in_place);
    PipeEnds pipe;
    Subscription watched = loop->watch(pipe.reading.get(), [] {});
    loop.reset();
    watched.cancel();
}

TEST(PollEventLoop, WaitsOnAfterASignal) {
    struct sigaction action{};
    action.sa_handler = [](int) {};
    struct sigaction before{};
    ::sigaction(SIGUSR1, &action, &before);
    PollEventLoop loop;
    PipeEnds pipe;
    int calls = 0;
    const Subscription watched = loop.watch(pipe.reading.get(), [&] { ++calls; });
    const pthread_t waiting = ::pthread_self();
    std::thread disturber([&] {
        for (int index = 0; index < 50; ++index) {
            ::pthread_kill(waiting, SIGUSR1);
            std::this_thread::yield();
        }
        pipe.write();
    });
    EXPECT_TRUE(loop.runOnce());
    EXPECT_EQ(calls, 1);
    disturber.join();
    ::sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
}  // namespace installer::test

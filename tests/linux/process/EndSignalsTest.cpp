#include <gtest/gtest.h>
#include <signal.h>

#include "linux/process/EndSignals.h"
#include "linux/process/PollEventLoop.h"

namespace installer::test {
namespace {

TEST(EndSignals, TheFirstSignalBecomesACallInTheEventLoop) {
    PollEventLoop loop;
    int calls = 0;
    const EndSignals signals(loop, [&] { ++calls; });
    ASSERT_EQ(::raise(SIGTERM), 0);
    EXPECT_EQ(calls, 0);
    loop.runUntilNow();
    EXPECT_EQ(calls, 1);
}

TEST(EndSignals, TheSecondSignalEndsTheProcess) {
    const auto twoSignals = [] {
        PollEventLoop loop;
        const EndSignals signals(loop, [] {});
        ::raise(SIGINT);
        ::raise(SIGTERM);
    };
    EXPECT_EXIT(twoSignals(), testing::KilledBySignal(SIGTERM), "");
}

TEST(EndSignals, AnIgnoredSignalStaysIgnored) {
    struct sigaction before{};
    ::signal(SIGHUP, SIG_IGN);
    {
        PollEventLoop loop;
        int calls = 0;
        const EndSignals signals(loop, [&] { ++calls; });
        ::raise(SIGHUP);
        loop.runUntilNow();
        EXPECT_EQ(calls, 0);
    }
    ASSERT_EQ(::sigaction(SIGHUP, nullptr, &before), 0);
    EXPECT_EQ(before.sa_handler, SIG_IGN);
    ::signal(SIGHUP, SIG_DFL);
}

TEST(EndSignals, ItsEndRestoresWhatTheSignalsDo) {
    PollEventLoop loop;
    {
        const EndSignals signals(loop, [] {});
    }
    struct sigaction action{};
    ASSERT_EQ(::sigaction(SIGTERM, nullptr, &action), 0);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

}  // namespace
}  // namespace installer::test

#include <functional>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/helper/CleanStart.h"

namespace installer::test {
namespace {

/// Whether it holds in a process after its clean start.
bool holdsAfter(const std::function<void()>& before, const std::function<bool()>& condition) {
    constexpr int holds = 42;
    const pid_t child = fork();
    if (child == 0) {
        before();
        cleanStart();
        _exit(condition() ? holds : 43);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == holds;
}

bool does(int signal, void (*handler)(int)) {
    struct sigaction action = {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == handler;
}

class CleanStartIgnoredSignal : public testing::TestWithParam<int> {};

TEST_P(CleanStartIgnoredSignal, StaysWithoutEffect) {
    EXPECT_TRUE(
        holdsAfter([] { signal(GetParam(), SIG_DFL); }, [] { return does(GetParam(), SIG_IGN); }));
}

INSTANTIATE_TEST_SUITE_P(Signals, CleanStartIgnoredSignal,
                         testing::Values(SIGPIPE, SIGINT, SIGQUIT, SIGHUP, SIGTSTP, SIGTTIN,
                                         SIGTTOU, SIGXFSZ, SIGXCPU, SIGCHLD),
                         [](const auto& row) { return std::string(sigabbrev_np(row.param)); });

TEST(CleanStart, OtherSignalsHaveTheirEffectAgainAndNoneIsBlocked) {
    const auto ignoreAndBlockAll = [] {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, nullptr);
        for (int number = 1; number <= SIGRTMAX; ++number) signal(number, SIG_IGN);
    };
    EXPECT_TRUE(holdsAfter(ignoreAndBlockAll, [] {
        sigset_t blocked;
        sigprocmask(SIG_SETMASK, nullptr, &blocked);
        for (const int number : {SIGTERM, SIGALRM, SIGUSR1, SIGSEGV, SIGRTMIN, SIGRTMAX}) {
            if (!does(number, SIG_DFL) || sigismember(&blocked, number) != 0) return false;
        }
        return sigismember(&blocked, SIGINT) == 0;
    }));
}

class CleanStartTimer : public testing::TestWithParam<__itimer_which_t> {};

TEST_P(CleanStartTimer, IsStopped) {
    const auto start = [] {
        const itimerval anHour{{}, {3600, 0}};
        setitimer(GetParam(), &anHour, nullptr);
    };
    EXPECT_TRUE(holdsAfter(start, [] {
        itimerval left = {};
        return getitimer(GetParam(), &left) == 0 && left.it_value.tv_sec == 0 &&
               left.it_value.tv_usec == 0;
    }));
}

INSTANTIATE_TEST_SUITE_P(Clocks, CleanStartTimer,
                         testing::Values(ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF));

TEST(CleanStart, LeavesNothingInTheEnvironment) {
    EXPECT_TRUE(holdsAfter([] { setenv("SECRET", "canary", 1); },
                           [] { return environ == nullptr || *environ == nullptr; }));
}

TEST(CleanStart, ClosesEveryDescriptorButTheStandardThree) {
    const auto open57 = [] { dup2(STDERR_FILENO, 57); };
    EXPECT_TRUE(holdsAfter(open57, [] {
        for (int number = 3; number < 1024; ++number) {
            if (fcntl(number, F_GETFD) >= 0) return false;
        }
        return fcntl(STDERR_FILENO, F_GETFD) >= 0;
    }));
}

TEST(CleanStart, OpensAMissingStandardDescriptorOnNothing) {
    for (int missing = 0; missing < 3; ++missing) {
        EXPECT_TRUE(holdsAfter([missing] { close(missing); },
                               [missing] {
                                   struct stat found = {};
                                   struct stat nothing = {};
                                   return fstat(missing, &found) == 0 &&
                                          stat("/dev/null", &nothing) == 0 &&
                                          found.st_rdev == nothing.st_rdev;
                               }))
            << missing;
    }
}

TEST(CleanStart, HasTheUsualMaskAndTheRootAsItsFolder) {
    const auto another = [] {
        umask(0);
        static_cast<void>(!chdir("/tmp"));
    };
    EXPECT_TRUE(holdsAfter(another, [] {
        char folder[16] = {};
        return umask(0) == 022 && getcwd(folder, sizeof folder) != nullptr &&
               std::string(folder) == "/";
    }));
}

// Limits. Not every root may raise the hard ones.

rlimit limitOf(int resource) {
    rlimit limit = {};
    getrlimit(static_cast<__rlimit_resource_t>(resource), &limit);
    return limit;
}

void limitSoftly(int resource, rlim_t soft) {
    const rlimit value{soft, limitOf(resource).rlim_max};
    setrlimit(static_cast<__rlimit_resource_t>(resource), &value);
}

class CleanStartLimit : public testing::TestWithParam<int> {};

TEST_P(CleanStartLimit, IsRaisedAsFarAsItCanBe) {
    EXPECT_TRUE(holdsAfter([] { limitSoftly(GetParam(), rlim_t{1} << 46U); },
                           [] {
                               const rlimit now = limitOf(GetParam());
                               return now.rlim_cur == now.rlim_max;
                           }));
}

INSTANTIATE_TEST_SUITE_P(Resources, CleanStartLimit,
                         testing::Values(RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_AS, RLIMIT_DATA,
                                         RLIMIT_STACK));

TEST(CleanStart, RaisesTheNumberOfDescriptorsAndNeverLowersIt) {
    ASSERT_GE(limitOf(RLIMIT_NOFILE).rlim_max, 2000U);
    EXPECT_TRUE(holdsAfter([] { limitSoftly(RLIMIT_NOFILE, 64); },
                           [] { return limitOf(RLIMIT_NOFILE).rlim_cur == 1024; }));
    EXPECT_TRUE(holdsAfter([] { limitSoftly(RLIMIT_NOFILE, 2000); },
                           [] { return limitOf(RLIMIT_NOFILE).rlim_cur == 2000; }));
}

TEST(CleanStart, RaisesWhatItMayIfTheHardLimitStays) {
    const auto asOrdinaryUser = [] {
        const rlimit low{64, 128};
        setrlimit(RLIMIT_NOFILE, &low);
        static_cast<void>(!setuid(65534));
    };
    EXPECT_TRUE(holdsAfter(asOrdinaryUser, [] { return limitOf(RLIMIT_NOFILE).rlim_cur == 128; }));
}

TEST(CleanStart, LeavesNoCoreDump) {
    EXPECT_TRUE(holdsAfter([] { limitSoftly(RLIMIT_CORE, limitOf(RLIMIT_CORE).rlim_max); },
                           [] {
                               const rlimit now = limitOf(RLIMIT_CORE);
                               return now.rlim_cur == 0 && now.rlim_max == 0;
                           }));
}

}  // namespace
}  // namespace installer::test

#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "linux/process/AtExit.h"

namespace installer::test {
namespace {

void say(const char* text) {
    std::fputs(text, stderr);
}

TEST(AtExit, RunsItsFunctionWhenALibraryEndsTheProcess) {
    const auto end = [] {
        const AtExit atExit([] { say("saved"); });
        std::exit(3);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(3), "^saved$");
}

TEST(AtExit, RunsNothingOnceItIsGone) {
    const auto end = [] {
        {
            const AtExit atExit([] { say("saved"); });
        }
        std::exit(3);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(3), "^$");
}

}  // namespace
}  // namespace installer::test

#include <algorithm>
#include <csignal>
#include <set>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/copies/TreeCopy.h"
#include "privileged/trees/Temporary.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

constexpr const char* deadName = ".installing-0123abcd";

FileDescriptor opened(const Disk& disk) {
    return FileDescriptor(open(disk.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

TEST(Temporary, HasAShortHiddenNameOfItsOwn) {
    const Disk disk;
    const auto folder = opened(disk);
    const auto first = Temporary::makeFile(folder.get(), 0600);
    const auto second = Temporary::makeFolder(folder.get());
    ASSERT_TRUE(first);
    ASSERT_TRUE(second);
    const auto names = disk.names();
    ASSERT_EQ(names.size(), 2U);
    for (const auto& name : names) {
        EXPECT_TRUE(isTemporaryName(name)) << name;
        EXPECT_EQ(name.front(), '.');
        EXPECT_EQ(name.find('.', 1), std::string::npos) << "it has a suffix: " << name;
        EXPECT_LT(name.size(), 32U);
    }
}

TEST(Temporary, NamesOfOthersAreNotTakenForIt) {
    for (const char* name :
         {".installing-", ".installing-0123abc", ".installing-0123abcde", "installing-0123abcd",
          ".installing-0123ABCD", ".installing-0123 bcd", "0123abcd", ""}) {
        EXPECT_FALSE(isTemporaryName(name)) << name;
    }
    EXPECT_TRUE(isTemporaryName(deadName));
}

TEST(Temporary, IsRemovedWithItsContentsUnlessItGotItsName) {
    const Disk disk;
    const auto folder = opened(disk);
    {
        auto temporary = Temporary::makeFolder(folder.get());
        ASSERT_TRUE(temporary);
        ASSERT_EQ(mkdirat(temporary.value().descriptor(), "inner", 0500), 0);
    }
    EXPECT_TRUE(disk.names().empty());
    {
        auto temporary = Temporary::makeFolder(folder.get());
        ASSERT_TRUE(temporary);
        ASSERT_FALSE(temporary.value().publish("kept"));
    }
    EXPECT_EQ(disk.names(), std::vector<std::string>{"kept"});
}

TEST(Temporary, IsLockedWhileItLives) {
    const Disk disk;
    const auto folder = opened(disk);
    FileDescriptor other;
    {
        auto temporary = Temporary::makeFile(folder.get(), 0600);
        ASSERT_TRUE(temporary);
        other.reset(open(disk.path(disk.names().front()).c_str(), O_RDONLY | O_CLOEXEC));
        EXPECT_NE(flock(other.get(), LOCK_EX | LOCK_NB), 0);
        ASSERT_FALSE(temporary.value().publish("done"));
    }
    EXPECT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), 0);
}

TEST(TemporaryOfADeadProcess, IsClearedByTheNextCopyIntoTheFolder) {
    const Disk disk;
    disk.makeFile("source", "text");
    disk.makeFile(deadName, "half");
    disk.makeFolder(".installing-deadfade", 0700);
    disk.makeFolder(".installing-deadfade/inner", 0000);
    disk.makeFile(".installing-mine", "not a temporary's name");
    ASSERT_FALSE(copyTree(disk.path("source"), disk.path("copy"), LinkPolicy::follow, {}));
    EXPECT_EQ(disk.names(), (std::vector<std::string>{".installing-mine", "copy", "source"}));
}

TEST(TemporaryOfADeadProcess, LinksAndFifosOfSuchANameAreNotTouched) {
    const Disk disk;
    disk.makeFile("target", "kept");
    disk.makeLink("target", deadName);
    disk.makeFifo(".installing-f1f0f1f0");
    clearDeadTemporaries(opened(disk).get());
    EXPECT_EQ(disk.names().size(), 3U);
    EXPECT_EQ(disk.contents("target"), "kept");
}

TEST(TemporaryOfADeadProcess, IsLeftToItsOwnerByOrdinaryUsers) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    const Disk disk;
    disk.setMode("", 0777);
    disk.makeFile(deadName, "of root");
    EXPECT_EQ(asOrdinaryUser([&] {
                  clearDeadTemporaries(opened(disk).get());
                  return std::string();
              }),
              "");
    EXPECT_TRUE(disk.exists(deadName));
    clearDeadTemporaries(opened(disk).get());
    EXPECT_FALSE(disk.exists(deadName));
}

TEST(TemporaryOfADeadProcess, IsLookedForOnceInAFolder) {
    const Disk disk;
    const auto folder = opened(disk);
    clearDeadTemporaries(folder.get());
    disk.makeFile(deadName);
    clearDeadTemporaries(folder.get());
    EXPECT_TRUE(disk.exists(deadName));
}

// A child that is killed in the middle of a copy leaves what it made; one that is alive keeps it.
TEST(TemporaryOfADeadProcess, IsToldFromALiveOneByItsLock) {
    const Disk disk;
    disk.makeFolder("source");
    disk.makeFile("source/file", "text");
    disk.makeFolder("to");
    const pid_t child = fork();
    if (child == 0) {
        static_cast<void>(copyTree(disk.path("source"), disk.path("to/first"), LinkPolicy::follow,
                                   [](std::uint64_t) { raise(SIGSTOP); }));
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, WUNTRACED), child);
    ASSERT_TRUE(WIFSTOPPED(status));
    const auto before = disk.names("to");
    ASSERT_EQ(before.size(), 1U);
    ASSERT_TRUE(isTemporaryName(before.front()));
    const auto copyInFreshProcess = [&](const char* name) {
        return inChild([&] {
            return copyTree(disk.path("source/file"), disk.path("to/") + name, LinkPolicy::follow,
                            {})
                .message();
        });
    };
    EXPECT_EQ(copyInFreshProcess("second"), "Success");
    EXPECT_EQ(disk.names("to"), (std::vector<std::string>{before.front(), "second"}));
    kill(child, SIGKILL);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(copyInFreshProcess("third"), "Success");
    EXPECT_EQ(disk.names("to"), (std::vector<std::string>{"second", "third"}));
}

// Two processes that start at the same moment clear the folder while the other fills it.
TEST(TemporaryOfADeadProcess, ClearingNeverDisturbsACopyThatIsJustStarting) {
    const Disk disk;
    disk.makeFile("source", "text");
    for (int round = 0; round < 50; ++round) {
        const std::string folder = "to" + std::to_string(round);
        disk.makeFolder(folder);
        std::vector<pid_t> children;
        for (int worker = 0; worker < 4; ++worker) {
            const pid_t child = fork();
            if (child == 0) {
                const auto error =
                    copyTree(disk.path("source"), disk.path(folder + "/" + std::to_string(worker)),
                             LinkPolicy::follow, {});
                _exit(error ? 1 : 0);
            }
            children.push_back(child);
        }
        for (const pid_t child : children) {
            int status = 0;
            waitpid(child, &status, 0);
            EXPECT_EQ(status, 0);
        }
        EXPECT_EQ(disk.names(folder), (std::vector<std::string>{"0", "1", "2", "3"}));
    }
}

// A fork copies whatever state the names come from.
TEST(Temporary, NoForkedProcessRepeatsTheNamesOfAnother) {
    const Disk disk;
    const auto folder = opened(disk);
    ASSERT_TRUE(Temporary::makeFile(folder.get(), 0600));
    std::set<std::string> names;
    for (int round = 0; round < 4; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            const auto made = Temporary::makeFile(folder.get(), 0600);
            _exit(made ? 0 : 1);  // leaves the entry
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        ASSERT_EQ(disk.names().size(), 1U);
        names.insert(disk.names().front());
        ASSERT_EQ(unlinkat(folder.get(), disk.names().front().c_str(), 0), 0);
    }
    EXPECT_EQ(names.size(), 4U);
}

}  // namespace
}  // namespace installer::test

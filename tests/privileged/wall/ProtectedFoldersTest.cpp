#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/wall/ProtectedFolders.h"
#include "tests/privileged/system/OwnAccounts.h"

namespace installer::test {
namespace {

constexpr uid_t user = 65534;

TEST(ProtectedFolders, AreThoseOfTheRunningSystemWithoutATargetVolume) {
    const ProtectedFolders folders;
    for (const char* path : {"/etc/x", "/usr/bin/x", "/home/me/x", "/root/x"}) {
        EXPECT_TRUE(folders.hold(path)) << path;
    }
    for (const char* path : {"/Library/x", "/usr/local/x", "/mnt/disk/etc/x", ""}) {
        EXPECT_FALSE(folders.hold(path)) << path;
    }
}

TEST(ProtectedFolders, AreThoseOfTheTargetVolumeWhereverItLies) {
    const ProtectedFolders folders("/var/tmp/vol", "", user);
    for (const char* path : {"/var/tmp/vol", "/var/tmp/vol/etc/x", "/var/tmp/vol/Users/other/x",
                             "/var/tmp/volume/x", "/etc/x"}) {
        EXPECT_TRUE(folders.hold(path)) << path;
    }
    for (const char* path : {"/var/tmp/vol/Library/x", "/var/tmp/vol/Users/nobody/x"}) {
        EXPECT_FALSE(folders.hold(path)) << path;
    }
}

TEST(ProtectedFolders, HoldTheTargetVolumeItselfWhereverItLies) {
    const ProtectedFolders folders("/mnt/disk", "", user);
    EXPECT_TRUE(folders.hold("/mnt/disk"));
    EXPECT_TRUE(folders.hold("/mnt/disk/usr/x"));
    EXPECT_FALSE(folders.hold("/mnt/disk/Library/x"));
    EXPECT_FALSE(folders.hold("/mnt/disk2/usr/x"));
}

TEST(ProtectedFolders, OnlyATargetVolumeHasTheFolderUsers) {
    EXPECT_TRUE(ProtectedFolders("", "", user).hold("/Users/nobody/x"));
    EXPECT_FALSE(ProtectedFolders("/mnt/disk", "", user).hold("/mnt/disk/Users/nobody/x"));
    constexpr uid_t unknown = 4'000'000'000;
    EXPECT_TRUE(ProtectedFolders("/mnt/disk", "", unknown).hold("/mnt/disk/Users/nobody/x"))
        << "a user without a name has no home on it";
}

TEST(ProtectedFolders, HoldNotTheHomeOfTheUsersAccount) {
    constexpr uid_t ada = 4242;
    const auto heldInHomeOf = [](uid_t owner) {
        return withAccounts("ada:x:4242:4242::/home/ada:\n", "", [owner]() -> std::string {
            if (::mount("none", "/home", "tmpfs", 0, "size=1m,mode=0755") != 0 ||
                ::mkdir("/home/ada", 0755) != 0 || ::chown("/home/ada", owner, 0) != 0) {
                return "no home";
            }
            const ProtectedFolders folders("", "/home/other", ada);
            return folders.hold("/home/ada/x") ? "held" : "not held";
        });
    };
    EXPECT_EQ(heldInHomeOf(ada), "not held");
    EXPECT_EQ(heldInHomeOf(0), "held");
}

TEST(ProtectedFolders, HoldNotTheHomeThatBelongsToTheUser) {
    const std::string home = "/home/installer-test-" + std::to_string(::getpid());
    if (::geteuid() != 0 || ::mkdir(home.c_str(), 0755) != 0) {
        GTEST_SKIP() << "NOT TESTED: needs to be root to make a home folder";
    }
    EXPECT_TRUE(ProtectedFolders("", home, user).hold(home + "/x")) << "it belongs to root";
    EXPECT_EQ(::chown(home.c_str(), user, user), 0);
    EXPECT_FALSE(ProtectedFolders("", home, user).hold(home + "/x"));
    EXPECT_TRUE(ProtectedFolders("", home, user).hold(home));
    EXPECT_EQ(::rmdir(home.c_str()), 0);
}

TEST(ProtectedFolders, HoldWhatAUserCallsAHomeButDoesNotOwn) {
    for (const char* home : {"/etc", "/var/spool", "/"}) {
        EXPECT_TRUE(ProtectedFolders("", home, user).hold("/etc/x")) << home;
        EXPECT_TRUE(ProtectedFolders("", home, 0).hold("/var/spool/x")) << home;
    }
}

}  // namespace
}  // namespace installer::test

#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/wall/ProtectedFolders.h"

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

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/values/SystemFolders.h"

namespace installer::test {
namespace {

const std::vector<std::string> home = {"/home/me"};

class SystemFoldersOfTheSystem : public testing::TestWithParam<std::string> {};

TEST_P(SystemFoldersOfTheSystem, AreNoDestination) {
    EXPECT_TRUE(isInSystemFolder(GetParam(), home));
}

INSTANTIATE_TEST_SUITE_P(Paths, SystemFoldersOfTheSystem,
                         testing::Values("/", "//", "/.", "/..", "/etc", "/etc/", "/etc/cron.d/x",
                                         "/etc/systemd/system.control/x.service", "//etc//x",
                                         "/./etc/x", "/Library/../etc/x", "/../../etc/x", "/usr",
                                         "/usr/bin/x", "/usr/local", "/usr/local/../bin/x",
                                         "/usr/localx/y", "/bin/x", "/sbin/x", "/lib/x", "/lib64/x",
                                         "/libx32/x", "/boot/x", "/dev/shm/x", "/proc/self/cwd/x",
                                         "/sys/x", "/run/x", "/run/mediax/y", "/run/media",
                                         "/root/x", "/var/spool/cron/x", "/var/home/me/x", "/home",
                                         "/home/me", "/home/other/x", "/home/me/../other/x",
                                         "/home/mex/y", "/Users", "/Users/other/x"));

class SystemFoldersOfOthers : public testing::TestWithParam<std::string> {};

TEST_P(SystemFoldersOfOthers, AreDestinations) {
    EXPECT_FALSE(isInSystemFolder(GetParam(), home));
}

INSTANTIATE_TEST_SUITE_P(Paths, SystemFoldersOfOthers,
                         testing::Values("/Library/x", "/Applications/x", "/opt/x", "/srv/x",
                                         "/tmp/x", "/libraries/x", "/Libs/x", "/etcetera/x",
                                         "/usr/local/x", "/mnt/disk/etc/x", "/media/me/disk/x",
                                         "/run/media/me/disk/usr/x", "/Volumes/Disk/x",
                                         "/home/me/x", "/home/me/Library/etc/x",
                                         "/home/other/../me/x", "/Users/Shared/x", "", "relative",
                                         "etc/x"));

TEST(SystemFolders, AnOwnHomeIsADestinationWhereverItLies) {
    for (const std::string folder :
         {"/root", "/var/home/me", "/Users/me", "/opt/../usr/people/me/"}) {
        const std::vector<std::string> homes = {"/home/me", folder};
        EXPECT_FALSE(isInSystemFolder(folder + "/x", homes)) << folder;
        EXPECT_TRUE(isInSystemFolder(folder, homes)) << folder;
        EXPECT_FALSE(isInSystemFolder("/home/me/x", homes));
        EXPECT_TRUE(isInSystemFolder("/var/x", homes));
    }
}

TEST(SystemFolders, AHomeThatIsTheRootAllowsNothing) {
    for (const std::string folder : {"/", "", "//", "/.."}) {
        const std::vector<std::string> homes = {folder};
        EXPECT_TRUE(isInSystemFolder("/etc/x", homes)) << folder;
    }
}

}  // namespace
}  // namespace installer::test

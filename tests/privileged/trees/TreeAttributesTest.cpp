#include <gtest/gtest.h>
#include <unistd.h>

#include "privileged/trees/TreeAttributes.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

constexpr const char* quarantine = "user.com.apple.quarantine";

TEST(TreeAttributesSetMode, SetsExactlyTheModeWhateverTheMask) {
    const Mask mask(077);
    const Disk disk;
    disk.makeFolder("folder", 02700);
    disk.makeFolder("folder/inner", 0700);
    disk.makeFile("folder/inner/file", "x", 04711);
    disk.makeFifo("folder/fifo");
    ASSERT_FALSE(setModeOfTree(disk.path("folder"), 0775, LinkPolicy::trustedOnly));
    for (const char* name : {"folder", "folder/inner", "folder/inner/file", "folder/fifo"}) {
        EXPECT_EQ(disk.mode(name), 0775U) << name;
    }
    ASSERT_FALSE(setModeOfTree(disk.path("folder/inner/file"), 06755, LinkPolicy::follow));
    EXPECT_EQ(disk.mode("folder/inner/file"), 06755U);
}

TEST(TreeAttributesSetMode, NeverFollowsALink) {
    const Disk disk;
    disk.makeFile("target", "x", 0600);
    disk.makeFolder("target folder", 0700);
    disk.makeFile("target folder/file", "x", 0600);
    disk.makeFolder("folder");
    disk.makeLink("../target", "folder/link");
    disk.makeLink("../target folder", "folder/link to folder");
    disk.makeLink("target", "link");
    disk.makeLink("nowhere", "dangling");
    for (const char* name : {"folder", "link", "link/", "dangling"}) {
        EXPECT_FALSE(setModeOfTree(disk.path(name), 0777, LinkPolicy::follow)) << name;
    }
    EXPECT_EQ(disk.mode("target"), 0600U);
    EXPECT_EQ(disk.mode("target folder"), 0700U);
    EXPECT_EQ(disk.mode("target folder/file"), 0600U);
}

TEST(TreeAttributesSetMode, OpensAndLocksFoldersOfAnOrdinaryUser) {
    const Disk disk;
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk.makeFolder("folder");
                  disk.makeFolder("folder/locked");
                  disk.makeFile("folder/locked/file", "x", 0000);
                  disk.setMode("folder/locked", 0000);
                  const auto opening = setModeOfTree(disk.path("folder"), 0755, LinkPolicy::follow);
                  const auto mode = disk.mode("folder/locked/file");
                  const auto locking = setModeOfTree(disk.path("folder"), 0000, LinkPolicy::follow);
                  return opening.message() + ", " + std::to_string(mode == 0755) + ", " +
                         locking.message();
              }),
              "Success, 1, Success");
    EXPECT_EQ(disk.mode("folder"), 0U);
}

TEST(TreeAttributesSetMode, GoesOnAfterAFailureAndTellsTheFirst) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to prepare an entry that is not ours";
    const Disk disk;
    ASSERT_EQ(asOrdinaryUser([&] {
                  disk.makeFolder("folder", 0777);
                  disk.makeFile("folder/a");
                  disk.makeFile("folder/z");
                  return std::string();
              }),
              "");
    disk.makeFile("folder/m");
    EXPECT_EQ(asOrdinaryUser([&] {
                  return setModeOfTree(disk.path("folder"), 0711, LinkPolicy::follow).message();
              }),
              "Operation not permitted");
    EXPECT_EQ(disk.mode("folder/a"), 0711U);
    EXPECT_EQ(disk.mode("folder/z"), 0711U);
    EXPECT_EQ(disk.mode("folder"), 0711U);
    EXPECT_EQ(disk.mode("folder/m"), 0644U);
}

TEST(TreeAttributesSetOwner, ChangesEverythingAndLinksThemselves) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
    const Disk disk;
    disk.makeFile("target");
    disk.makeFolder("folder");
    disk.makeFolder("folder/inner");
    disk.makeFile("folder/inner/file");
    disk.makeFifo("folder/fifo");
    disk.makeLink("../target", "folder/link");
    ASSERT_FALSE(setOwnerOfTree(disk.path("folder"), 1234, 5678, LinkPolicy::trustedOnly));
    for (const char* name :
         {"folder", "folder/inner", "folder/inner/file", "folder/fifo", "folder/link"}) {
        EXPECT_EQ(disk.status(name).st_uid, 1234U) << name;
        EXPECT_EQ(disk.status(name).st_gid, 5678U) << name;
    }
    EXPECT_EQ(disk.status("target").st_uid, 0U);
}

TEST(TreeAttributesSetOwner, IsRefusedToOrdinaryUsers) {
    const Disk disk;
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk.makeFile("file");
                  return setOwnerOfTree(disk.path("file"), 0, 0, LinkPolicy::follow).message();
              }),
              "Operation not permitted");
}

TEST(TreeAttributesRemoveAttribute, TakesItFromFilesAndFolders) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFolder("folder/inner");
    disk.makeFile("folder/inner/file", "x", 0644);
    disk.makeFile("folder/never had it");
    disk.makeFifo("folder/fifo");
    for (const char* name : {"folder", "folder/inner", "folder/inner/file"}) {
        disk.setAttribute(name, quarantine, "0081;x");
    }
    disk.setAttribute("folder/inner/file", "user.other", "kept");
    EXPECT_FALSE(removeAttributeOfTree(disk.path("folder"), quarantine, LinkPolicy::trustedOnly));
    for (const char* name : {"folder", "folder/inner", "folder/inner/file"}) {
        EXPECT_EQ(disk.attribute(name, quarantine), "") << name;
    }
    EXPECT_EQ(disk.attribute("folder/inner/file", "user.other"), "kept");
    EXPECT_FALSE(removeAttributeOfTree(disk.path("folder"), quarantine, LinkPolicy::trustedOnly));
}

TEST(TreeAttributesRemoveAttribute, NeverFollowsALink) {
    const Disk disk;
    disk.makeFile("target");
    disk.setAttribute("target", quarantine, "x");
    disk.makeFolder("folder");
    disk.makeLink("../target", "folder/link");
    disk.makeLink("target", "link");
    EXPECT_FALSE(removeAttributeOfTree(disk.path("folder"), quarantine, LinkPolicy::follow));
    EXPECT_FALSE(removeAttributeOfTree(disk.path("link"), quarantine, LinkPolicy::follow));
    EXPECT_EQ(disk.attribute("target", quarantine), "x");
}

TEST(TreeAttributesRemoveAttribute, SucceedsOnAFileSystemWithoutAttributes) {
    if (geteuid() != 0) GTEST_SKIP() << "only root may ask there";
    EXPECT_FALSE(removeAttributeOfTree("/proc/version", quarantine, LinkPolicy::follow));
}

TEST(TreeAttributes, SayWhenThereIsNoEntryOrALinkOnTheWayIsForbidden) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/file", "x", 0600);
    disk.makeLink("folder", "link");
    const auto check = [](auto act, const std::string& path, LinkPolicy policy,
                          std::errc expected) { EXPECT_EQ(act(path, policy), expected); };
    const auto mode = [](const std::string& path, LinkPolicy policy) {
        return setModeOfTree(path, 0777, policy);
    };
    const auto owner = [](const std::string& path, LinkPolicy policy) {
        return setOwnerOfTree(path, geteuid(), getegid(), policy);
    };
    const auto attribute = [](const std::string& path, LinkPolicy policy) {
        return removeAttributeOfTree(path, quarantine, policy);
    };
    const auto checkBoth = [&](auto act) {
        check(act, disk.path("missing"), LinkPolicy::follow, std::errc::no_such_file_or_directory);
        check(act, disk.path("link/file"), LinkPolicy::trustedOnly,
              std::errc::too_many_symbolic_link_levels);
    };
    checkBoth(mode);
    checkBoth(owner);
    checkBoth(attribute);
    EXPECT_EQ(disk.mode("folder/file"), 0600U);
}

}  // namespace
}  // namespace installer::test

#include <gtest/gtest.h>
#include <unistd.h>

#include "privileged/files/FolderCreation.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

constexpr LinkPolicy bothPolicies[] = {LinkPolicy::follow, LinkPolicy::trustedOnly};

TEST(FolderCreation, MakesEveryMissingFolderWithExactlyTheMode) {
    const Mask mask(077);
    for (const auto policy : bothPolicies) {
        const Disk disk;
        disk.makeFolder("there", 0700);
        ASSERT_FALSE(makeFolders(disk.path("there/a//b/c/"), 0775, policy));
        EXPECT_EQ(disk.mode("there"), 0700U);
        EXPECT_EQ(disk.mode("there/a"), 0775U);
        EXPECT_EQ(disk.mode("there/a/b"), 0775U);
        EXPECT_EQ(disk.mode("there/a/b/c"), 0775U);
    }
}

TEST(FolderCreation, KeepsTheSpecialBitsOfTheMode) {
    const Disk disk;
    ASSERT_FALSE(makeFolders(disk.path("a/b"), 01777, LinkPolicy::follow));
    EXPECT_EQ(disk.mode("a"), 01777U);
    EXPECT_EQ(disk.mode("a/b"), 01777U);
}

// It is opened once more after it has been made.
TEST(FolderCreation, MakesAFolderThatItsOwnerMayNotRead) {
    const Disk disk;
    EXPECT_EQ(asOrdinaryUser([&] {
                  return makeFolders(disk.path("closed"), 0055, LinkPolicy::follow).message();
              }),
              "Success");
    EXPECT_EQ(disk.mode("closed"), 0055U);
}

TEST(FolderCreation, LeavesAnExistingFolderAsItIs) {
    const Disk disk;
    disk.makeFolder("there", 0711);
    EXPECT_FALSE(makeFolders(disk.path("there"), 0775, LinkPolicy::follow));
    EXPECT_EQ(disk.mode("there"), 0711U);
    EXPECT_FALSE(makeFolders("/", 0775, LinkPolicy::trustedOnly));
}

TEST(FolderCreation, TakesALinkToAFolderForTheFolder) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeLink("folder", "link");
    EXPECT_FALSE(makeFolders(disk.path("link"), 0775, LinkPolicy::follow));
    EXPECT_FALSE(makeFolders(disk.path("link/new"), 0775, LinkPolicy::follow));
    EXPECT_TRUE(disk.exists("folder/new"));
}

TEST(FolderCreation, RefusesALinkThatIsNotTrusted) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeLink("folder", "link");
    for (const char* path : {"link", "link/new", "link/new/deeper"}) {
        EXPECT_EQ(makeFolders(disk.path(path), 0775, LinkPolicy::trustedOnly),
                  std::errc::too_many_symbolic_link_levels);
    }
    EXPECT_TRUE(disk.names("folder").empty());
}

TEST(FolderCreation, FailsOnEveryOtherEntry) {
    const Disk disk;
    disk.makeFile("file", "kept");
    disk.makeFifo("fifo");
    disk.makeLink("nowhere", "dangling");
    for (const auto policy : bothPolicies) {
        EXPECT_EQ(makeFolders(disk.path("file"), 0775, policy), std::errc::not_a_directory);
        EXPECT_EQ(makeFolders(disk.path("file/a/b"), 0775, policy), std::errc::not_a_directory);
        EXPECT_EQ(makeFolders(disk.path("fifo"), 0775, policy), std::errc::not_a_directory);
    }
    EXPECT_EQ(makeFolders(disk.path("dangling"), 0775, LinkPolicy::follow), std::errc::file_exists);
    EXPECT_EQ(makeFolders(disk.path("dangling/a"), 0775, LinkPolicy::follow),
              std::errc::file_exists);
    EXPECT_EQ(disk.contents("file"), "kept");
    EXPECT_FALSE(disk.exists("nowhere"));
}

TEST(FolderCreation, RefusesPathsThatNameNothing) {
    for (const std::string& path :
         {std::string(), std::string("a/b"), std::string("/tmp/a\0b", 8)}) {
        EXPECT_EQ(makeFolders(path, 0775, LinkPolicy::follow),
                  std::errc::no_such_file_or_directory);
    }
}

TEST(FolderCreation, LeavesTheFoldersMadeSoFar) {
    const Disk disk;
    EXPECT_EQ(makeFolders(disk.path("a/" + std::string(256, 'n') + "/b"), 0775, LinkPolicy::follow),
              std::errc::filename_too_long);
    EXPECT_FALSE(
        makeFolders(disk.path("a/" + std::string(255, 'n') + "/b"), 0775, LinkPolicy::follow));
}

TEST(FolderCreationTouchFile, MakesAnEmptyFileLessTheMask) {
    const Disk disk;
    const Mask mask(027);
    ASSERT_FALSE(touchFile(disk.path("file"), LinkPolicy::follow));
    EXPECT_EQ(disk.contents("file"), "");
    EXPECT_EQ(disk.mode("file"), 0640U);
}

TEST(FolderCreationTouchFile, RenewsTheTimesAndNothingElse) {
    const Disk disk;
    disk.makeFile("file", "kept", 0400);
    disk.setTimes("file", {1000, 0}, {1000, 0});
    const time_t before = time(nullptr) - 1;
    ASSERT_FALSE(touchFile(disk.path("file"), LinkPolicy::trustedOnly));
    EXPECT_GE(disk.status("file").st_mtim.tv_sec, before);
    EXPECT_GE(disk.status("file").st_atim.tv_sec, before);
    EXPECT_EQ(disk.contents("file"), "kept");
    EXPECT_EQ(disk.mode("file"), 0400U);
}

TEST(FolderCreationTouchFile, NeverFollowsALink) {
    const Disk disk;
    disk.makeFile("target");
    disk.setTimes("target", {1000, 0}, {1000, 0});
    disk.makeLink("target", "link");
    disk.makeLink("nowhere", "dangling");
    EXPECT_FALSE(touchFile(disk.path("link"), LinkPolicy::follow));
    EXPECT_FALSE(touchFile(disk.path("dangling"), LinkPolicy::follow));
    EXPECT_EQ(disk.status("target").st_mtim.tv_sec, 1000);
    EXPECT_FALSE(disk.exists("nowhere"));
}

TEST(FolderCreationTouchFile, SaysWhyAFileCannotBeMade) {
    const Disk disk;
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk.makeFolder("closed", 0555);
                  return touchFile(disk.path("closed/file"), LinkPolicy::follow).message();
              }),
              "Permission denied");
}

TEST(FolderCreationTouchFile, NeverWaitsForAFifo) {
    const Disk disk;
    disk.makeFifo("fifo");
    disk.setTimes("fifo", {1000, 0}, {1000, 0});
    EXPECT_FALSE(touchFile(disk.path("fifo"), LinkPolicy::follow));
    EXPECT_GT(disk.status("fifo").st_mtim.tv_sec, 1000);
}

}  // namespace
}  // namespace installer::test

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/files/PathWalk.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

FileDescriptor opened(const std::string& folder) {
    return FileDescriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

bool isFolderAt(const Result<FileDescriptor>& folder, const std::string& path) {
    struct stat left = {};
    struct stat right = {};
    return folder && fstat(folder.value().get(), &left) == 0 && stat(path.c_str(), &right) == 0 &&
           left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

struct stat linkOf(uid_t owner) {
    struct stat link = {};
    link.st_mode = S_IFLNK | 0777;
    link.st_uid = owner;
    return link;
}

constexpr auto tooManyLinks = std::errc::too_many_symbolic_link_levels;

TEST(PathWalk, AnyTrustFollowsEveryLinkAndGoesUp) {
    EXPECT_TRUE(LinkTrust::any().mayFollow(linkOf(1234), false));
    EXPECT_TRUE(LinkTrust::any().mayGoUp(false));
}

TEST(PathWalk, TrustOfRootOrAUserFollowsOnlyTheLinksOfTheTwo) {
    const auto trust = LinkTrust::ofRootOr(1234);
    EXPECT_TRUE(trust.mayFollow(linkOf(0), false));
    EXPECT_TRUE(trust.mayFollow(linkOf(1234), false));
    EXPECT_FALSE(trust.mayFollow(linkOf(1235), true));
    EXPECT_TRUE(trust.mayGoUp(false));
    EXPECT_TRUE(LinkTrust::ofRootOr(std::nullopt).mayFollow(linkOf(0), false));
    EXPECT_FALSE(LinkTrust::ofRootOr(std::nullopt).mayFollow(linkOf(1234), false));
}

TEST(PathWalk, TrustInRootsFoldersAsksOnlyWhoCanChangeTheFolders) {
    const auto trust = LinkTrust::inRootsFolders();
    EXPECT_TRUE(trust.mayFollow(linkOf(1234), true));
    EXPECT_FALSE(trust.mayFollow(linkOf(0), false));
    EXPECT_TRUE(trust.mayGoUp(true));
    EXPECT_FALSE(trust.mayGoUp(false));
}

TEST(PathWalk, BeginsARelativePathAtTheStartAndAnAbsoluteOneAtTheRoot) {
    const Disk disk;
    disk.makeFolder("a");
    disk.makeFolder("a/b");
    EXPECT_TRUE(
        isFolderAt(walkPath(opened(disk.path("a")), "./b//", LinkTrust::any()), disk.path("a/b")));
    EXPECT_TRUE(isFolderAt(walkPath(opened(disk.path("a")), "/usr", LinkTrust::any()), "/usr"));
    EXPECT_TRUE(isFolderAt(walkPath(opened(disk.path("a")), "../a/b/..", LinkTrust::any()),
                           disk.path("a")));
}

TEST(PathWalk, FollowsRelativeAndAbsoluteLinksOverSeveralStations) {
    const Disk disk;
    disk.makeFolder("a");
    disk.makeFolder("a/b");
    disk.makeLink(disk.path("a"), "absolute");
    disk.makeLink("absolute/../a/b", "relative");
    EXPECT_TRUE(
        isFolderAt(walkPath(opened(disk.path()), "relative", LinkTrust::any()), disk.path("a/b")));
}

TEST(PathWalk, NeverTrustsAStartOfItsCallerAsRootsFolder) {
    const Disk disk;
    disk.makeFolder("a");
    disk.makeLink("a", "link");
    EXPECT_EQ(walkPath(opened(disk.path()), "link", LinkTrust::inRootsFolders()).error(),
              tooManyLinks);
    EXPECT_EQ(walkPath(opened(disk.path("a")), "..", LinkTrust::inRootsFolders()).error(),
              tooManyLinks);
}

TEST(PathWalk, RefusesAFileAndAMissingFolder) {
    const Disk disk;
    disk.makeFile("file");
    disk.makeLink("missing", "dangling");
    EXPECT_EQ(walkPath(opened(disk.path()), "file", LinkTrust::any()).error(),
              std::errc::not_a_directory);
    EXPECT_EQ(walkPath(opened(disk.path()), "dangling", LinkTrust::any()).error(),
              std::errc::no_such_file_or_directory);
}

TEST(PathWalk, FollowsFortyLinksAndNoMore) {
    const Disk disk;
    disk.makeFolder("0");
    for (int link = 1; link <= 41; ++link) {
        disk.makeLink(std::to_string(link - 1), std::to_string(link));
    }
    EXPECT_TRUE(isFolderAt(walkPath(opened(disk.path()), "40", LinkTrust::any()), disk.path("0")));
    EXPECT_EQ(walkPath(opened(disk.path()), "41", LinkTrust::any()).error(), tooManyLinks);
}

}  // namespace
}  // namespace installer::test

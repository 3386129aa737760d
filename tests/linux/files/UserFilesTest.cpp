#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "linux/files/UserFiles.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr auto atOnce = UserFiles::Durability::atOnce;
constexpr uid_t someUser = 12345;
constexpr gid_t someGroup = 12346;

struct stat statusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

class UserFilesTest : public testing::Test {
  protected:
    ScratchFolder disk_;
    std::string home_ = disk_.addFolder("home");
    UserFiles files_{home_};
};

TEST_F(UserFilesTest, MakesTheFileAndTheFoldersAboveIt) {
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/Preferences/a b.plist"), "text", atOnce));
    EXPECT_EQ(disk_.read("home/Library/Preferences/a b.plist"), "text");
    EXPECT_THAT(disk_.names("home/Library/Preferences"), ElementsAre("a b.plist"));
    EXPECT_EQ(statusOf(disk_.at("home/Library/Preferences/a b.plist")).st_mode & 07777, 0644u);
}

TEST_F(UserFilesTest, ReplacesAFileAndKeepsItsPermissions) {
    const std::string path = disk_.add("home/file", "a much longer old text");
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    EXPECT_FALSE(files_.replace(path, "new", atOnce));
    EXPECT_EQ(disk_.read("home/file"), "new");
    EXPECT_EQ(statusOf(path).st_mode & 07777, 0600u);
    EXPECT_THAT(disk_.names("home"), ElementsAre("file"));
}

TEST_F(UserFilesTest, ReplacesALinkAndLeavesItsTargetAlone) {
    disk_.add("target", "old");
    std::filesystem::create_symlink(disk_.at("target"), disk_.at("home/file"));
    EXPECT_FALSE(files_.replace(disk_.at("home/file"), "new", atOnce));
    EXPECT_EQ(disk_.read("target"), "old");
    EXPECT_TRUE(S_ISREG(statusOf(disk_.at("home/file")).st_mode));
}

TEST_F(UserFilesTest, AFolderInItsPlaceIsAnErrorAndNothingIsLeft) {
    disk_.addFolder("home/file");
    EXPECT_EQ(files_.replace(disk_.at("home/file"), "new", atOnce).value(), EISDIR);
    EXPECT_THAT(disk_.names("home"), ElementsAre("file"));
}

TEST_F(UserFilesTest, AFileInTheWayOfAFolderIsAnError) {
    disk_.add("home/Library", "no folder");
    EXPECT_EQ(files_.replace(disk_.at("home/Library/file"), "new", atOnce).value(), ENOTDIR);
}

TEST_F(UserFilesTest, RefusesPathsThatNameNothing) {
    EXPECT_EQ(files_.replace("relative/file", "new", atOnce).value(), ENOENT);
    EXPECT_EQ(files_.replace("", "new", atOnce).value(), ENOENT);
    EXPECT_EQ(files_.replace(disk_.at("home/file") + std::string("\0x", 2), "new", atOnce).value(),
              ENOENT);
    EXPECT_THAT(disk_.names("home"), IsEmpty());
}

TEST_F(UserFilesTest, ClearsWhatAProcessThatDiedLeftInTheFolder) {
    disk_.add("home/Library/.installing-0123abcd", "half a file");
    disk_.add("home/Library/.installing-other", "no name of ours");
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/file"), "text", atOnce));
    EXPECT_THAT(disk_.names("home/Library"),
                testing::UnorderedElementsAre(".installing-other", "file"));
}

/// What only root can try.
class UserFilesAsRoot : public UserFilesTest {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "needs to be root to give files away";
        ASSERT_EQ(::chown(home_.c_str(), someUser, someGroup), 0);
    }
};

TEST_F(UserFilesAsRoot, GivesNewFilesAndFoldersToTheOwnerOfTheHomeFolder) {
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/Preferences/file"), "text", atOnce));
    for (const char* path :
         {"home/Library", "home/Library/Preferences", "home/Library/Preferences/file"}) {
        EXPECT_EQ(statusOf(disk_.at(path)).st_uid, someUser) << path;
        EXPECT_EQ(statusOf(disk_.at(path)).st_gid, someGroup) << path;
    }
}

TEST_F(UserFilesAsRoot, GivesTheFileAwayBelowAFolderThatRootMade) {
    disk_.addFolder("home/Library");
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/file"), "text", atOnce));
    EXPECT_EQ(statusOf(disk_.at("home/Library/file")).st_uid, someUser);
    EXPECT_EQ(statusOf(disk_.at("home/Library")).st_uid, 0u);
}

TEST_F(UserFilesAsRoot, AnExistingFileKeepsItsOwner) {
    const std::string path = disk_.add("home/file", "old");
    ASSERT_EQ(::chown(path.c_str(), someUser + 1, someGroup + 1), 0);
    EXPECT_FALSE(files_.replace(path, "new", atOnce));
    EXPECT_EQ(statusOf(path).st_uid, someUser + 1);
    EXPECT_EQ(statusOf(path).st_gid, someGroup + 1);
}

TEST_F(UserFilesAsRoot, GivesNothingAwayInForeignFoldersThatALinkLeadsTo) {
    disk_.addFolder("foreign");
    std::filesystem::create_symlink(disk_.at("foreign"), disk_.at("home/Library"));
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/Preferences/file"), "text", atOnce));
    EXPECT_EQ(statusOf(disk_.at("foreign/Preferences")).st_uid, 0u);
    EXPECT_EQ(statusOf(disk_.at("foreign/Preferences/file")).st_uid, 0u);
}

TEST_F(UserFilesAsRoot, GivesAwayInTheUsersOwnFoldersThatALinkLeadsTo) {
    const std::string other = disk_.addFolder("other-disk");
    ASSERT_EQ(::chown(other.c_str(), someUser, someGroup), 0);
    std::filesystem::create_symlink(other, disk_.at("home/Library"));
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/Preferences/file"), "text", atOnce));
    EXPECT_EQ(statusOf(disk_.at("other-disk/Preferences/file")).st_uid, someUser);
}

TEST_F(UserFilesAsRoot, FollowsTheUsersLinksOverSeveralStations) {
    disk_.addFolder("disk/inner");
    std::filesystem::create_symlink("../disk", disk_.at("home/station"));
    std::filesystem::create_symlink("station/./inner", disk_.at("home/Library"));
    ASSERT_EQ(::lchown(disk_.at("home/Library").c_str(), someUser, someGroup), 0);
    ASSERT_EQ(::chown(disk_.at("disk/inner").c_str(), someUser, someGroup), 0);
    EXPECT_FALSE(files_.replace(disk_.at("home/Library/file"), "text", atOnce));
    EXPECT_EQ(disk_.read("disk/inner/file"), "text");
}

TEST_F(UserFilesAsRoot, WritesNothingInForeignFoldersThatALinkOfTheUserLeadsTo) {
    disk_.addFolder("foreign/Preferences");
    std::filesystem::create_symlink(disk_.at("foreign"), disk_.at("home/Library"));
    ASSERT_EQ(::lchown(disk_.at("home/Library").c_str(), someUser, someGroup), 0);
    for (const char* path :
         {"home/Library/file", "home/Library/Preferences/file", "home/Library/New/file"}) {
        EXPECT_EQ(files_.replace(disk_.at(path), "text", atOnce).value(), ELOOP) << path;
    }
    EXPECT_THAT(disk_.names("foreign"), ElementsAre("Preferences"));
    EXPECT_THAT(disk_.names("foreign/Preferences"), IsEmpty());
}

TEST_F(UserFilesAsRoot, FollowsNoLinkThatAThirdUserMade) {
    disk_.addFolder("foreign/Preferences");
    const std::string link = disk_.at("home/Library");
    std::filesystem::create_symlink(disk_.at("foreign"), link);
    ASSERT_EQ(::lchown(link.c_str(), someUser + 1, someGroup), 0);
    // Nor behind a link that may be followed.
    std::filesystem::create_symlink(link, disk_.at("home/own"));
    for (const char* path : {"home/Library/file", "home/own/file", "home/own/Preferences/file"}) {
        EXPECT_EQ(files_.replace(disk_.at(path), "text", atOnce).value(), ELOOP) << path;
    }
    EXPECT_THAT(disk_.names("foreign"), ElementsAre("Preferences"));
    EXPECT_THAT(disk_.names("foreign/Preferences"), IsEmpty());
}

TEST_F(UserFilesAsRoot, WritesNothingBelowAHomeThatALinkOfAThirdUserLeadsTo) {
    const std::string link = disk_.at("link");
    std::filesystem::create_symlink(home_, link);
    ASSERT_EQ(::lchown(link.c_str(), someUser + 1, someGroup), 0);
    const std::string parentLink = disk_.at("parent");
    std::filesystem::create_symlink(disk_.path(), parentLink);
    ASSERT_EQ(::lchown(parentLink.c_str(), someUser + 1, someGroup), 0);
    for (const std::string& home : {link, parentLink + "/home"}) {
        EXPECT_EQ(UserFiles(home).replace(home + "/file", "text", atOnce).value(), ELOOP) << home;
    }
    EXPECT_THAT(disk_.names("home"), IsEmpty());
}

TEST_F(UserFilesAsRoot, WritesBelowAHomeThatALinkOfRootOrItsOwnerLeadsTo) {
    const std::string link = disk_.at("link");
    std::filesystem::create_symlink(home_, link);
    EXPECT_FALSE(UserFiles(link).replace(link + "/of-root", "text", atOnce));
    ASSERT_EQ(::lchown(link.c_str(), someUser, someGroup), 0);
    EXPECT_FALSE(UserFiles(link).replace(link + "/own", "text", atOnce));
    EXPECT_EQ(statusOf(disk_.at("home/own")).st_uid, someUser);
    EXPECT_THAT(disk_.names("home"), UnorderedElementsAre("of-root", "own"));
}

TEST_F(UserFilesTest, ALinkThatLeadsNowhereOrInACircleIsAnError) {
    std::filesystem::create_symlink("missing", disk_.at("home/dangling"));
    std::filesystem::create_symlink("circle", disk_.at("home/circle"));
    EXPECT_EQ(files_.replace(disk_.at("home/dangling/file"), "text", atOnce).value(), ENOENT);
    EXPECT_EQ(files_.replace(disk_.at("home/circle/file"), "text", atOnce).value(), ELOOP);
    EXPECT_THAT(disk_.names("home"), UnorderedElementsAre("circle", "dangling"));
}

}  // namespace
}  // namespace installer::test

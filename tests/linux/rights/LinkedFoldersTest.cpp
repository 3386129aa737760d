#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "linux/rights/LinkedFolders.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

/// A folder "real", and a link "linked" to it in a folder that others can add to.
class LinkedFoldersTest : public testing::Test {
  protected:
    LinkedFoldersTest() {
        scratch.add("real/Plug-Ins/old.8bf", "");
        if (::symlink((scratch / "real").c_str(), (scratch / "linked").c_str()) != 0) {
            ADD_FAILURE() << "no link";
        }
    }

    [[nodiscard]] WriteGrant grantOf(const std::string& folder, const std::string& item) const {
        WriteGrant grant;
        grant.addFolder(folder == "." ? scratch.path() : scratch / folder);
        grant.addDestination(scratch / item);
        return grant;
    }

    ScratchFolder scratch;
    LinkedFolders links{::getuid()};
};

TEST_F(LinkedFoldersTest, TheGrantNamesTheFolderThatTheLinkLeadsTo) {
    const WriteGrant led = links.follow(grantOf("linked", "linked/Plug-Ins/new.8bf"));
    EXPECT_THAT(led.folders(), ElementsAre(scratch / "real"));
    EXPECT_THAT(led.destinations(), ElementsAre(scratch / "real/Plug-Ins/new.8bf"));
    EXPECT_EQ(links.followed(scratch / "linked/Plug-Ins/new.8bf"),
              scratch / "real/Plug-Ins/new.8bf");
}

TEST_F(LinkedFoldersTest, ALinkBelowTheGrantedFolderIsFollowedToo) {
    const WriteGrant led = links.follow(grantOf(".", "linked/Plug-Ins/Maker/new.8bf"));
    EXPECT_TRUE(led.holds(scratch / "real/Plug-Ins/Maker/new.8bf"));
}

TEST_F(LinkedFoldersTest, FoldersThatAreStillMissingAreTakenAsTheyAre) {
    static_cast<void>(links.follow(grantOf("linked", "linked/a/b/new.8bf")));
    EXPECT_EQ(links.followed(scratch / "linked/a/b"), scratch / "real/a/b");
}

TEST_F(LinkedFoldersTest, WithoutALinkTheGrantStaysAsItIs) {
    const WriteGrant grant = grantOf("real", "real/Plug-Ins/new.8bf");
    EXPECT_EQ(links.follow(grant), grant);
    EXPECT_EQ(links.followed(scratch / "real/Plug-Ins/new.8bf"), scratch / "real/Plug-Ins/new.8bf");
}

TEST_F(LinkedFoldersTest, ALinkOfAnotherUserIsNotFollowed) {
    LinkedFolders ofNobody{65534};
    ASSERT_EQ(::lchown((scratch / "linked").c_str(), ::getuid() == 0 ? 1 : ::getuid(),
                       static_cast<gid_t>(-1)),
              0);
    const WriteGrant grant = grantOf("linked", "linked/Plug-Ins/new.8bf");
    EXPECT_EQ(ofNobody.follow(grant), grant);
}

TEST_F(LinkedFoldersTest, ALinkOfAnotherUserIsARefusal) {
    ASSERT_EQ(::lchown((scratch / "linked").c_str(), 1, static_cast<gid_t>(-1)), 0);
    const LinkedFolders ofNobody{65534};
    const ProtectedFolders none;
    EXPECT_EQ(ofNobody.refusal(scratch / "linked/Plug-Ins", none), LinkRefusal::ofAnotherUser);
    EXPECT_EQ(ofNobody.refusal(scratch / "linked/a/b", none), LinkRefusal::ofAnotherUser)
        << "a folder that the run would make";
    EXPECT_EQ(ofNobody.refusal(scratch / "real/Plug-Ins", none), LinkRefusal::none);
    EXPECT_EQ(ofNobody.refusal(scratch / "missing", none), LinkRefusal::none);
}

TEST_F(LinkedFoldersTest, AnOwnLinkIsRefusedOnlyWhereItLeadsIntoAFolderOfTheSystem) {
    const ProtectedFolders system;
    EXPECT_EQ(links.refusal(scratch / "linked/Plug-Ins", system), LinkRefusal::none);
    ASSERT_EQ(::symlink("/usr/share", (scratch / "into system").c_str()), 0);
    EXPECT_EQ(links.refusal(scratch / "into system", system), LinkRefusal::intoSystem);
    EXPECT_EQ(links.refusal(scratch / "into system/a", system), LinkRefusal::intoSystem);
}

TEST_F(LinkedFoldersTest, ALinkThatLeadsNowhereIsNoRefusal) {
    ASSERT_EQ(::symlink("circle", (scratch / "circle").c_str()), 0);
    ASSERT_EQ(::symlink("gone", (scratch / "dangling").c_str()), 0);
    EXPECT_EQ(links.refusal(scratch / "circle/a", ProtectedFolders()), LinkRefusal::none);
    EXPECT_EQ(links.refusal(scratch / "dangling/a", ProtectedFolders()), LinkRefusal::none);
}

TEST_F(LinkedFoldersTest, ALinkThatIsChangedLaterLeadsWhereItLedBefore) {
    static_cast<void>(links.follow(grantOf("linked", "linked/Plug-Ins/new.8bf")));
    ASSERT_EQ(::unlink((scratch / "linked").c_str()), 0);
    ASSERT_EQ(::symlink("/", (scratch / "linked").c_str()), 0);
    EXPECT_EQ(links.followed(scratch / "linked/Plug-Ins"), scratch / "real/Plug-Ins");
}

}  // namespace
}  // namespace installer::test

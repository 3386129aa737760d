#include <gtest/gtest.h>

#include "foundation/values/Paths.h"

namespace installer::test {
namespace {

TEST(Paths, JoinPutsOneSeparatorBetweenFolderAndEntry) {
    EXPECT_EQ(joinPath("/Library", "Acme"), "/Library/Acme");
    EXPECT_EQ(joinPath("Library", "Acme"), "Library/Acme");
    EXPECT_EQ(joinPath("/Library", "Acme/Filters 2"), "/Library/Acme/Filters 2");
}

TEST(Paths, JoinNeverDoublesASeparator) {
    EXPECT_EQ(joinPath("/Library/", "Acme"), "/Library/Acme");
    EXPECT_EQ(joinPath("/Library", "/Acme"), "/Library/Acme");
    EXPECT_EQ(joinPath("/Library///", "//Acme"), "/Library/Acme");
    EXPECT_EQ(joinPath("//Library//User", "Acme//Filters"), "/Library/User/Acme/Filters");
}

TEST(Paths, JoinLeavesSeparatorsAtTheEndAway) {
    EXPECT_EQ(joinPath("/Library", "Acme/"), "/Library/Acme");
    EXPECT_EQ(joinPath("/Library", "Acme//"), "/Library/Acme");
    EXPECT_EQ(joinPath("/Library", "/"), "/Library");
}

TEST(Paths, JoinToTheRootGivesAPathInTheRoot) {
    EXPECT_EQ(joinPath("/", "Library"), "/Library");
    EXPECT_EQ(joinPath("/", "/Library"), "/Library");
    EXPECT_EQ(joinPath("/", "/"), "/");
}

TEST(Paths, JoinWithAnEmptySideGivesTheOther) {
    EXPECT_EQ(joinPath("", "Acme"), "Acme");
    EXPECT_EQ(joinPath("", "//Acme//Filters/"), "/Acme/Filters");
    EXPECT_EQ(joinPath("/Library", ""), "/Library");
    EXPECT_EQ(joinPath("//Library//", ""), "/Library");
    EXPECT_EQ(joinPath("/", ""), "/");
    EXPECT_EQ(joinPath("", ""), "");
}

TEST(Paths, DotsAreComponentsLikeOthers) {
    EXPECT_EQ(joinPath("/a/..", "./b"), "/a/.././b");
    EXPECT_EQ(lastPathComponent("/a/.."), "..");
    EXPECT_EQ(parentPath("/a/.."), "/a");
}

TEST(Paths, LastComponentIsWhatFollowsTheLastSeparator) {
    EXPECT_EQ(lastPathComponent("/a/b"), "b");
    EXPECT_EQ(lastPathComponent("b"), "b");
    EXPECT_EQ(lastPathComponent("/Programme/Größe.app"), "Größe.app");
}

TEST(Paths, LastComponentIgnoresSeparatorsAtTheEnd) {
    EXPECT_EQ(lastPathComponent("/a/b/"), "b");
    EXPECT_EQ(lastPathComponent("/a//b//"), "b");
    EXPECT_EQ(lastPathComponent("b//"), "b");
}

TEST(Paths, LastComponentOfTheRootIsTheRoot) {
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent("///"), "/");
}

TEST(Paths, LastComponentOfNoPathIsNothing) {
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(Paths, ParentIsThePathWithoutItsLastComponent) {
    EXPECT_EQ(parentPath("/a/b"), "/a");
    EXPECT_EQ(parentPath("a/b"), "a");
}

TEST(Paths, ParentIgnoresSeparatorsAtTheEndAndDoubledOnes) {
    EXPECT_EQ(parentPath("/a/b/"), "/a");
    EXPECT_EQ(parentPath("//a///b//"), "/a");
}

TEST(Paths, ParentInTheRootIsTheRoot) {
    EXPECT_EQ(parentPath("/a"), "/");
    EXPECT_EQ(parentPath("//a/"), "/");
    EXPECT_EQ(parentPath("/"), "/");
}

TEST(Paths, ParentOfASingleComponentOrOfNoPathIsNothing) {
    EXPECT_EQ(parentPath("a"), "");
    EXPECT_EQ(parentPath("a/"), "");
    EXPECT_EQ(parentPath(""), "");
}

TEST(Paths, RunsOfSeparatorsBecomeOne) {
    EXPECT_EQ(withSingleSeparators("//a///b//c///"), "/a/b/c");
    EXPECT_EQ(withSingleSeparators("a//b"), "a/b");
    EXPECT_EQ(withSingleSeparators("////"), "/");
    EXPECT_EQ(withSingleSeparators(""), "");
}

TEST(Paths, OrdinaryPathsStayAsTheyAre) {
    EXPECT_EQ(withSingleSeparators("/a b/\xFF/c"), "/a b/\xFF/c");
}

}  // namespace
}  // namespace installer::test

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "privileged/trees/Temporary.h"
#include "privileged/trees/TreeRemoval.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

class TreeRemoval : public testing::TestWithParam<LinkPolicy> {
  protected:
    std::error_code remove(const std::string& name) {
        return removeTree(disk_.path(name), GetParam());
    }

    Disk disk_;
};

INSTANTIATE_TEST_SUITE_P(Policies, TreeRemoval,
                         testing::Values(LinkPolicy::follow, LinkPolicy::trustedOnly),
                         [](const auto& way) {
                             return way.param == LinkPolicy::follow ? "Follow" : "TrustedOnly";
                         });

TEST_P(TreeRemoval, RemovesEntriesOfEveryType) {
    disk_.makeFile("-rf", "text", 0000);
    disk_.makeFolder("folder");
    disk_.makeFolder("folder/inner");
    disk_.makeFile("folder/inner/.hidden", "text");
    disk_.makeFifo("folder/fifo");
    disk_.makeFifo("fifo");
    disk_.makeSocket("socket");
    disk_.makeFile(std::string(255, 'n'));
    for (const auto& name : disk_.names()) EXPECT_FALSE(remove(name)) << name;
    EXPECT_TRUE(disk_.names().empty());
}

TEST_P(TreeRemoval, NeverFollowsALink) {
    disk_.makeFolder("outside");
    disk_.makeFile("outside/file", "kept");
    disk_.makeFolder("folder");
    disk_.makeLink("../outside", "folder/link");
    disk_.makeLink("outside", "link");
    disk_.makeLink("nowhere", "dangling");
    EXPECT_FALSE(remove("folder"));
    EXPECT_FALSE(remove("link/"));
    EXPECT_FALSE(remove("dangling"));
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"outside"});
    EXPECT_EQ(disk_.contents("outside/file"), "kept");
}

TEST_P(TreeRemoval, SaysWhenThereIsNoEntry) {
    EXPECT_EQ(remove("missing"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(remove("missing/entry"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(removeTree("relative", GetParam()), std::errc::no_such_file_or_directory);
    EXPECT_EQ(removeTree("/", GetParam()), std::errc::invalid_argument);
}

// Somebody with fewer rights may have moved an entry aside and then failed to take it apart.
TEST_P(TreeRemoval, ClearsDeadTemporariesEachTimeThereIsNoEntry) {
    for (const char* dead : {".installing-0123abcd", ".installing-0123abce"}) {
        disk_.makeFolder(dead);
        disk_.makeFile(std::string(dead) + "/file");
        EXPECT_EQ(remove("missing"), std::errc::no_such_file_or_directory);
        EXPECT_TRUE(disk_.names().empty());
    }
}

TEST_P(TreeRemoval, OpensOwnFoldersThatAreLocked) {
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk_.makeFolder("folder");
                  disk_.makeFolder("folder/unreadable");
                  disk_.makeFile("folder/unreadable/file", "text", 0000);
                  disk_.makeFolder("folder/unwritable");
                  disk_.makeFile("folder/unwritable/file", "text");
                  disk_.setMode("folder/unreadable", 0000);
                  disk_.setMode("folder/unwritable", 0500);
                  disk_.setMode("folder", 0000);
                  return remove("folder").message();
              }),
              "Success");
    EXPECT_TRUE(disk_.names().empty());
}

TEST_P(TreeRemoval, LeavesTheEntryWholeWhereItMayNotBeTakenAway) {
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk_.makeFolder("closed");
                  disk_.makeFolder("closed/folder");
                  disk_.makeFile("closed/folder/file", "kept");
                  disk_.makeFile("closed/file", "kept");
                  disk_.setMode("closed", 0555);
                  return remove("closed/folder").message() + ", " + remove("closed/file").message();
              }),
              "Permission denied, Permission denied");
    EXPECT_EQ(disk_.contents("closed/folder/file"), "kept");
    EXPECT_EQ(disk_.contents("closed/file"), "kept");
}

// Only root can put a folder of its own into another user's one.
TEST_P(TreeRemoval, WhatCannotBeTakenApartIsGoneFromItsPathAllTheSame) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to prepare a folder that is not ours";
    ASSERT_EQ(asOrdinaryUser([&] {
                  disk_.makeFolder("folder", 0777);
                  // Whatever the order of the entries, some come after the one that stays.
                  for (int index = 0; index < 40; ++index) {
                      disk_.makeFolder("folder/" + std::to_string(index));
                  }
                  return std::string();
              }),
              "");
    disk_.makeFolder("folder/roots", 0755);
    disk_.makeFile("folder/roots/file", "kept");
    EXPECT_EQ(asOrdinaryUser([&] { return remove("folder").message(); }), "Permission denied");
    const auto names = disk_.names();
    ASSERT_EQ(names.size(), 1U);
    EXPECT_TRUE(isTemporaryName(names.front()));
    EXPECT_EQ(disk_.names(names.front()), std::vector<std::string>{"roots"});
    EXPECT_EQ(disk_.contents(names.front() + "/roots/file"), "kept");
    // Root, in a process of its own, clears it with its next copy into the folder.
    EXPECT_EQ(inChild([&] {
                  clearDeadTemporaries(open(disk_.path().c_str(), O_PATH | O_CLOEXEC));
                  return std::to_string(disk_.names().size());
              }),
              "0");
}

TEST(TreeRemovalLinks, ALinkOnTheWayIsFollowedOnlyWhereThePolicyAllows) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/one");
    disk.makeFile("folder/two");
    disk.makeLink("folder", "link");
    EXPECT_EQ(removeTree(disk.path("link/one"), LinkPolicy::trustedOnly),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_FALSE(removeTree(disk.path("link/two"), LinkPolicy::follow));
    EXPECT_EQ(disk.names("folder"), std::vector<std::string>{"one"});
}

}  // namespace
}  // namespace installer::test

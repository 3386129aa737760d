#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "privileged/copies/TreeCopy.h"
#include "privileged/trees/TreeRemoval.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

constexpr timespec oldTime = {1'000'000'000, 123'456'789};
constexpr timespec olderTime = {900'000'000, 987'654'321};

class TreeCopy : public testing::TestWithParam<LinkPolicy> {
  protected:
    std::error_code copy(const std::string& from, const std::string& to) {
        return copyTree(disk_.path(from), disk_.path(to), GetParam(), {});
    }

    void expectTimes(const std::string& name) {
        const auto status = disk_.status(name);
        EXPECT_EQ(status.st_mtim.tv_sec, oldTime.tv_sec) << name;
        EXPECT_EQ(status.st_mtim.tv_nsec, oldTime.tv_nsec) << name;
        EXPECT_EQ(status.st_atim.tv_sec, olderTime.tv_sec) << name;
        EXPECT_EQ(status.st_atim.tv_nsec, olderTime.tv_nsec) << name;
    }

    Disk disk_;
};

INSTANTIATE_TEST_SUITE_P(Policies, TreeCopy,
                         testing::Values(LinkPolicy::follow, LinkPolicy::trustedOnly),
                         [](const auto& way) {
                             return way.param == LinkPolicy::follow ? "Follow" : "TrustedOnly";
                         });

TEST_P(TreeCopy, KeepsAFilesContentsModeTimesAndAttributes) {
    disk_.makeFile("file", std::string("text\0more", 9), 0640);
    disk_.setAttribute("file", "user.one", "1");
    disk_.setAttribute("file", "user.long", std::string(2000, 'x'));
    disk_.setAttribute("file", "user.empty", "");
    disk_.setTimes("file", olderTime, oldTime);
    ASSERT_FALSE(copy("file", "copy"));
    expectTimes("copy");
    EXPECT_EQ(disk_.contents("copy"), std::string("text\0more", 9));
    EXPECT_EQ(disk_.mode("copy"), 0640U);
    EXPECT_EQ(disk_.attribute("copy", "user.one"), "1");
    EXPECT_EQ(disk_.attribute("copy", "user.long"), std::string(2000, 'x'));
    EXPECT_EQ(disk_.names(), (std::vector<std::string>{"copy", "file"}));
}

TEST_P(TreeCopy, KeepsEveryModeWhateverTheMask) {
    const Mask mask(077);
    for (const mode_t mode : {04755U, 02755U, 06711U, 01666U, 0777U, 0444U, 0400U}) {
        const std::string name = "file" + std::to_string(mode);
        disk_.makeFile(name, "x", mode);
        ASSERT_FALSE(copy(name, name + " copy"));
        EXPECT_EQ(disk_.mode(name + " copy"), mode);
    }
    for (const mode_t mode : {02775U, 01777U, 0555U, 0500U}) {
        const std::string name = "folder" + std::to_string(mode);
        disk_.makeFolder(name);
        disk_.makeFolder(name + "/inner");
        disk_.setMode(name + "/inner", mode);
        disk_.setMode(name, mode);
        ASSERT_FALSE(copy(name, name + " copy"));
        EXPECT_EQ(disk_.mode(name + " copy"), mode);
        EXPECT_EQ(disk_.mode(name + " copy/inner"), mode);
    }
}

TEST_P(TreeCopy, DropsWhatLetsOthersActAsTheOwnerWhereThatIsAsked) {
    const auto dropping = [this](const std::string& from, const std::string& to) {
        return copyTree(disk_.path(from), disk_.path(to), GetParam(), {}, Privileges::drop);
    };
    constexpr const char* capabilities = "security.capability";
    disk_.makeFolder("folder");
    disk_.makeFile("folder/program", "x", 0755);
    // One that may change its user, in the second form that the kernel knows.
    const std::string changesUser("\1\0\0\2\x80\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);
    disk_.setAttribute("folder/program", capabilities, changesUser);
    disk_.setAttribute("folder/program", "user.one", "1");
    disk_.setMode("folder/program", 07755);
    disk_.setMode("folder", 03775);
    ASSERT_FALSE(copy("folder", "kept"));
    ASSERT_EQ(disk_.attribute("kept/program", capabilities), changesUser);
    ASSERT_FALSE(dropping("folder", "copy"));
    ASSERT_FALSE(dropping("folder/program", "program"));
    EXPECT_EQ(disk_.mode("copy"), 01775U);
    for (const char* name : {"copy/program", "program"}) {
        EXPECT_EQ(disk_.mode(name), 01755U);
        EXPECT_EQ(disk_.attribute(name, capabilities), "");
        EXPECT_EQ(disk_.attribute(name, "user.one"), "1");
    }
}

TEST_P(TreeCopy, KeepsTimesAndAttributesOfFoldersWithContents) {
    disk_.makeFolder("folder");
    disk_.makeFolder("folder/inner");
    disk_.makeFile("folder/inner/file", "text");
    disk_.setAttribute("folder/inner", "user.of folder", "yes");
    for (const char* name : {"folder/inner/file", "folder/inner", "folder"}) {
        disk_.setTimes(name, olderTime, oldTime);
    }
    ASSERT_FALSE(copy("folder", "copy"));
    for (const char* name : {"copy/inner/file", "copy/inner", "copy"}) expectTimes(name);
    EXPECT_EQ(disk_.attribute("copy/inner", "user.of folder"), "yes");
}

TEST_P(TreeCopy, CopiesLinksAsLinks) {
    disk_.makeFile("outside", "kept");
    disk_.makeFolder("folder");
    disk_.makeLink("../nowhere", "folder/dangling");
    disk_.makeLink("/etc/hostname", "folder/absolute");
    disk_.makeLink("../outside", "folder/outside");
    disk_.makeLink(".", "folder/itself");
    disk_.setTimes("folder/dangling", olderTime, oldTime);
    ASSERT_FALSE(copy("folder", "copy"));
    EXPECT_EQ(disk_.linkTarget("copy/dangling"), "../nowhere");
    EXPECT_EQ(disk_.linkTarget("copy/absolute"), "/etc/hostname");
    EXPECT_EQ(disk_.linkTarget("copy/outside"), "../outside");
    EXPECT_EQ(disk_.linkTarget("copy/itself"), ".");
    // Reading a link, as this test and the copy do, sets its access time.
    EXPECT_EQ(disk_.status("copy/dangling").st_mtim.tv_nsec, oldTime.tv_nsec);
}

TEST_P(TreeCopy, CopiesALinkThatIsTheItem) {
    disk_.makeFile("file", "kept");
    disk_.makeLink("file", "link");
    disk_.makeLink("nowhere", "dangling");
    disk_.setTimes("link", olderTime, oldTime);
    ASSERT_FALSE(copy("link", "copy"));
    ASSERT_FALSE(copy("dangling", "dangling copy"));
    EXPECT_EQ(disk_.status("copy").st_mtim.tv_nsec, oldTime.tv_nsec);
    EXPECT_EQ(disk_.linkTarget("copy"), "file");
    EXPECT_EQ(disk_.linkTarget("dangling copy"), "nowhere");
    EXPECT_EQ(copy("dangling", "copy"), std::errc::file_exists);
    EXPECT_EQ(disk_.linkTarget("copy"), "file");
    EXPECT_EQ(disk_.names(),
              (std::vector<std::string>{"copy", "dangling", "dangling copy", "file", "link"}));
}

TEST_P(TreeCopy, KeepsHardLinksWithinTheItemOnly) {
    disk_.makeFolder("folder");
    disk_.makeFolder("folder/a");
    disk_.makeFolder("folder/z");
    disk_.makeFile("folder/a/one", "text");
    ASSERT_EQ(link(disk_.path("folder/a/one").c_str(), disk_.path("folder/z/two").c_str()), 0);
    ASSERT_EQ(link(disk_.path("folder/a/one").c_str(), disk_.path("folder/three").c_str()), 0);
    ASSERT_EQ(link(disk_.path("folder/a/one").c_str(), disk_.path("outside").c_str()), 0);
    ASSERT_FALSE(copy("folder", "copy"));
    const auto one = disk_.status("copy/a/one");
    EXPECT_EQ(one.st_nlink, 3U);
    EXPECT_EQ(disk_.status("copy/z/two").st_ino, one.st_ino);
    EXPECT_EQ(disk_.status("copy/three").st_ino, one.st_ino);
    EXPECT_EQ(disk_.contents("copy/three"), "text");
    EXPECT_NE(disk_.status("outside").st_ino, one.st_ino);
    EXPECT_EQ(disk_.status("outside").st_nlink, 4U);
}

TEST_P(TreeCopy, TakesNamesOfAnyBytes) {
    disk_.makeFolder("folder");
    const std::vector<std::string> names = {std::string(255, 'n'),
                                            "two words",
                                            "'single' \"double\"",
                                            "line\nbreak",
                                            "50%@%s",
                                            "-rf",
                                            "--",
                                            "\xC3\xA4\xC3\xB6\xE6\xBC\xA2\xD7\xA9",
                                            "\xFF\xFE\x80",
                                            "\\back*?[x]"};
    for (const auto& name : names) {
        disk_.makeFile("folder/" + name, name);
        ASSERT_FALSE(copy("folder/" + name, name)) << name;
        EXPECT_EQ(disk_.contents(name), name);
    }
    ASSERT_FALSE(copy("folder", std::string(255, 'c')));
    EXPECT_EQ(disk_.names(std::string(255, 'c')), disk_.names("folder"));
}

TEST_P(TreeCopy, CopiesFoldersThatTheirOwnerCannotWrite) {
    EXPECT_EQ(asOrdinaryUser([&] {
                  disk_.makeFolder("own");
                  disk_.makeFolder("own/inner");
                  disk_.makeFile("own/inner/file", "text", 0400);
                  disk_.makeFolder("own/unreadable", 0000);
                  disk_.setMode("own/unreadable", 0400);
                  disk_.setMode("own/inner", 0500);
                  disk_.setMode("own", 0500);
                  return copy("own", "copy").message();
              }),
              "Success");
    EXPECT_EQ(disk_.mode("copy"), 0500U);
    EXPECT_EQ(disk_.mode("copy/inner"), 0500U);
    EXPECT_EQ(disk_.mode("copy/unreadable"), 0400U);
    EXPECT_EQ(disk_.contents("copy/inner/file"), "text");
}

TEST_P(TreeCopy, TheCopyBelongsToWhoeverCopies) {
    disk_.makeFile("file", "text", 0644);
    EXPECT_EQ(asOrdinaryUser([&] {
                  const auto error = copy("file", "copy");
                  return disk_.status("copy").st_uid == geteuid() ? error.message() : "not ours";
              }),
              "Success");
}

TEST_P(TreeCopy, ReadsFilesThatTellNoSize) {
    ASSERT_FALSE(copyTree("/proc/version", disk_.path("version"), GetParam(), {}));
    EXPECT_EQ(disk_.contents("version").substr(0, 5), "Linux");
}

TEST(TreeCopyLinks, ALinkOnTheWayIsFollowedOnlyWhereThePolicyAllows) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/file", "text");
    disk.makeLink("folder", "link");
    EXPECT_FALSE(copyTree(disk.path("link/file"), disk.path("link/copy"), LinkPolicy::follow, {}));
    EXPECT_EQ(disk.contents("folder/copy"), "text");
    for (const auto& [from, to] :
         {std::pair{"link/file", "new"}, std::pair{"folder/file", "link/new"}}) {
        EXPECT_EQ(copyTree(disk.path(from), disk.path(to), LinkPolicy::trustedOnly, {}),
                  std::errc::too_many_symbolic_link_levels);
    }
    EXPECT_EQ(disk.names("folder"), (std::vector<std::string>{"copy", "file"}));
}

// Deeper than a stack of calls or a small table of descriptors would bear.
TEST(TreeCopyDepth, CopiesAndRemovesVeryDeepTrees) {
    const Disk disk;
    constexpr int depth = 2000;
    constexpr const char* levelName = "level";
    std::string place = disk.path();
    ASSERT_EQ(chdir(place.c_str()), 0);
    ASSERT_EQ(mkdir("deep", 0755), 0);
    ASSERT_EQ(chdir("deep"), 0);
    for (int level = 0; level < depth; ++level) {
        ASSERT_EQ(mkdir(levelName, 0755), 0);
        ASSERT_EQ(chdir(levelName), 0);
    }
    ASSERT_EQ(chdir("/"), 0);
    EXPECT_EQ(inChild([&]() -> std::string {
                  const rlimit few = {64, 64};
                  setrlimit(RLIMIT_NOFILE, &few);
                  if (const auto error =
                          copyTree(disk.path("deep"), disk.path("copy"), LinkPolicy::follow, {}))
                      return error.message();
                  int levels = 0;
                  if (chdir(disk.path("copy").c_str()) != 0) return "no copy";
                  while (chdir(levelName) == 0) ++levels;
                  if (levels != depth) return std::to_string(levels) + " levels";
                  if (chdir("/") != 0) return "no root";
                  const auto error = removeTree(disk.path("copy"), LinkPolicy::follow);
                  return error ? error.message() : "";
              }),
              "");
    EXPECT_FALSE(removeTree(disk.path("deep"), LinkPolicy::follow));
    EXPECT_TRUE(disk.names().empty());
}

/// Access control lists as the kernel takes them: a version, then a tag, rights and a number for
/// each entry.
std::string accessList(const std::vector<std::array<std::uint32_t, 3>>& entries) {
    std::string bytes = {2, 0, 0, 0};
    const auto append = [&bytes](std::uint32_t number, int size) {
        for (int index = 0; index < size; ++index) {
            bytes += static_cast<char>((number >> (8 * index)) & 0xffU);
        }
    };
    for (const auto& [tag, rights, number] : entries) {
        append(tag, 2);
        append(rights, 2);
        append(number, 4);
    }
    return bytes;
}

TEST_P(TreeCopy, TakesTheAccessListsThatTheSourceLacksFromTheCopy) {
    constexpr std::uint32_t noNumber = 0xffffffff;
    const std::string allForANeighbour = accessList({{0x01, 7, noNumber},
                                                     {0x02, 7, 12345},
                                                     {0x04, 7, noNumber},
                                                     {0x10, 7, noNumber},
                                                     {0x20, 7, noNumber}});
    disk_.makeFolder("source");
    disk_.makeFolder("source/folder", 0755);
    disk_.makeFile("source/folder/file", "text", 0644);
    disk_.makeFolder("neighbours");
    disk_.setAttribute("neighbours", "system.posix_acl_default", allForANeighbour);
    for (const auto privileges : {Privileges::keep, Privileges::drop}) {
        const std::string copy =
            privileges == Privileges::keep ? "neighbours/kept" : "neighbours/dropped";
        ASSERT_FALSE(copyTree(disk_.path("source"), disk_.path(copy), GetParam(), {}, privileges));
        for (const std::string& entry : {copy, copy + "/folder", copy + "/folder/file"}) {
            EXPECT_EQ(disk_.attribute(entry, "system.posix_acl_access"), "") << entry;
            if (!entry.ends_with("file")) {
                EXPECT_EQ(disk_.attribute(entry, "system.posix_acl_default"), "") << entry;
            }
        }
        EXPECT_EQ(disk_.mode(copy + "/folder"), 0755U);
        EXPECT_EQ(disk_.mode(copy + "/folder/file"), 0644U);
    }
}

}  // namespace
}  // namespace installer::test

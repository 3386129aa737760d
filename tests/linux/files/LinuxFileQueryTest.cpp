#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "linux/files/LinuxFileQuery.h"
#include "linux/process/PollEventLoop.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Le;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;

using Paths = std::vector<std::string>;

std::size_t openDescriptors() {
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

class LinuxFileQueryTest : public testing::Test {
  protected:
    LinuxFileQueryTest() { disk.makeFolder("scope"); }

    void makeFolders(const std::string& name) const {
        std::filesystem::create_directories(disk.path(name));
    }
    void makeFile(const std::string& name) const {
        makeFolders(name.substr(0, name.rfind('/')));
        disk.makeFile(name);
    }
    void start(const std::string& pattern) {
        query->setNameLike(pattern);
        query->start();
    }
    void finish() {
        while (query->isGathering()) loop.runUntilNow();
    }
    /// The results' paths, relative to the scope where they lie below it.
    [[nodiscard]] Paths results() const {
        const std::string above = disk.path("scope") + "/";
        Paths paths;
        for (std::size_t index = 0; index < query->resultCount(); ++index) {
            const FoundFile found = query->result(index);
            EXPECT_EQ(found.name, found.path.substr(found.path.rfind('/') + 1));
            paths.push_back(found.path.starts_with(above) ? found.path.substr(above.size())
                                                          : found.path);
        }
        return paths;
    }
    Paths found(const std::string& pattern) {
        start(pattern);
        finish();
        query->stop();
        return results();
    }
    Paths foundIn(const Paths& scopes) {
        query->setSearchScopes(scopes);
        return found("N");
    }
    /// More folders than one turn looks into, each with an entry "N".
    void makeManyFolders() const {
        for (int index = 0; index < manyFolders; ++index) {
            makeFile("scope/folder" + std::to_string(index) + "/N");
        }
    }
    static constexpr int manyFolders = 40;

    Disk disk;
    PollEventLoop loop;
    std::unique_ptr<FileQuery> query = [this] {
        auto made = LinuxFileQueries(loop).create();
        made->setSearchScopes({disk.path("scope")});
        return made;
    }();
};

// What it finds.

TEST_F(LinuxFileQueryTest, FindsEntriesOfEveryKindAtEveryDepth) {
    makeFile("scope/N");
    makeFile("scope/a/b/c/N");
    makeFile("scope/.hidden/N");
    makeFile("scope/Tool.app/Contents/N");
    makeFile("scope/folder/N/inside/N");
    makeFolders("scope/link");
    disk.makeLink("/nowhere", "scope/link/N");
    makeFolders("scope/fifo");
    disk.makeFifo("scope/fifo/N");
    makeFile("scope/a/other");
    EXPECT_THAT(found("N"),
                UnorderedElementsAre("N", "a/b/c/N", ".hidden/N", "Tool.app/Contents/N", "folder/N",
                                     "folder/N/inside/N", "link/N", "fifo/N"));
}

TEST_F(LinuxFileQueryTest, FindsExactlyTheNameInEveryLetter) {
    for (const std::string name : {"F.plugin", "f.plugin", "F.plugin 2", "My F.plugin"}) {
        makeFile("scope/" + name);
    }
    EXPECT_THAT(found("F.plugin"), ElementsAre("F.plugin"));
}

TEST_F(LinuxFileQueryTest, FindsEverythingThatAWildcardMatches) {
    for (const std::string name : {"F*", "Foreign", "Gr?n", "Gr\u00FCn", "Gruen"}) {
        makeFile("scope/" + name);
    }
    EXPECT_THAT(found("F*"), UnorderedElementsAre("F*", "Foreign"));
    EXPECT_THAT(found("Gr?n"), UnorderedElementsAre("Gr?n", "Gr\u00FCn"));
}

TEST_F(LinuxFileQueryTest, FindsNamesThatAreSyntaxElsewhere) {
    for (const std::string name : {"it's \"x\" || %@", "\xFF\xFE", "-rf", "a\nb", "[x]"}) {
        makeFile("scope/deep/" + name);
        EXPECT_THAT(found(name), ElementsAre("deep/" + name));
    }
}

TEST_F(LinuxFileQueryTest, DoesNotFindTheScopeItself) {
    makeFile("scope/N/x");
    query->setSearchScopes({disk.path("scope/N")});
    EXPECT_THAT(found("N"), IsEmpty());
}

TEST_F(LinuxFileQueryTest, GivesPathsWithSingleSeparatorsHoweverTheScopeIsWritten) {
    makeFile("scope/a/N");
    query->setSearchScopes({disk.path() + "//scope//"});
    EXPECT_THAT(found("N"), ElementsAre("a/N"));
}

TEST_F(LinuxFileQueryTest, FindsEveryEntryOfAFolderThatIsReadInManyParts) {
    makeFolders("scope/wide");
    for (int index = 1000; index < 1500; ++index) {
        disk.makeFile("scope/wide/" + std::string(200, 'x') + std::to_string(index));
    }
    EXPECT_THAT(found("*"), SizeIs(501));
}

TEST_F(LinuxFileQueryTest, SearchesSeveralScopesOneAfterTheOther) {
    makeFile("scope/one/N");
    makeFile("scope/two/N");
    EXPECT_THAT(foundIn({disk.path("scope/two"), "/nonexistent", disk.path("scope/one")}),
                ElementsAre("two/N", "one/N"));
}

TEST_F(LinuxFileQueryTest, FindsNothingInAScopeThatIsNoFolder) {
    makeFile("scope/N");
    EXPECT_THAT(foundIn({}), IsEmpty());
    EXPECT_THAT(foundIn({""}), IsEmpty());
    EXPECT_THAT(foundIn({"."}), IsEmpty());
    EXPECT_THAT(foundIn({"/nonexistent"}), IsEmpty());
    EXPECT_THAT(foundIn({disk.path("scope/N")}), IsEmpty());
    EXPECT_THAT(foundIn({disk.path("scope") + std::string("\0x", 2)}), IsEmpty());
}

TEST_F(LinuxFileQueryTest, WhatCannotBeReadIsPassedOver) {
    makeFile("scope/locked/N");
    makeFile("scope/open/N");
    makeFile("scope/unsearchable/deeper/N");
    disk.setMode("scope/locked", 0);
    disk.setMode("scope/unsearchable", 0744);
    EXPECT_EQ(asOrdinaryUser([this] {
                  std::string all;
                  for (const std::string& path : found("N")) all += path + ";";
                  return all;
              }),
              "open/N;");
}

// Links.

TEST_F(LinuxFileQueryTest, NoLinkInTheTreeIsFollowed) {
    makeFile("outside/N");
    makeFile("scope/real/N");
    disk.makeLink(disk.path("outside"), "scope/out");
    disk.makeLink("../outside", "scope/outRelative");
    disk.makeLink(".", "scope/loop");
    disk.makeLink("real", "scope/again");
    EXPECT_THAT(found("N"), ElementsAre("real/N"));
}

TEST_F(LinuxFileQueryTest, LinksInTheScopesPathAreFollowed) {
    makeFile("outside/deep/N");
    disk.makeLink("outside", "link");
    EXPECT_THAT(foundIn({disk.path("link")}), ElementsAre(disk.path("link/deep/N")));
    EXPECT_THAT(foundIn({disk.path("link/deep")}), ElementsAre(disk.path("link/deep/N")));
}

TEST_F(LinuxFileQueryTest, AFolderThatBecomesALinkMeanwhileIsNotFollowed) {
    makeManyFolders();
    makeFile("outside/secret/N");
    start("N");
    loop.runUntilNow();
    ASSERT_TRUE(query->isGathering());
    for (int index = 0; index < manyFolders; ++index) {
        const std::string folder = "scope/folder" + std::to_string(index);
        std::filesystem::rename(disk.path(folder), disk.path("moved" + std::to_string(index)));
        disk.makeLink("../outside", folder);
    }
    finish();
    EXPECT_THAT(results(), SizeIs(Le(16U)));
    for (const std::string& path : results()) EXPECT_THAT(path, Not(HasSubstr("secret")));
}

TEST_F(LinuxFileQueryTest, AParentThatBecomesALinkMeanwhileIsNotFollowed) {
    for (int index = 0; index < manyFolders; ++index) {
        makeFile("scope/top/folder" + std::to_string(index) + "/N");
        makeFile("outside/folder" + std::to_string(index) + "/secret/N");
    }
    start("N");
    loop.runUntilNow();
    ASSERT_TRUE(query->isGathering());
    std::filesystem::rename(disk.path("scope/top"), disk.path("moved"));
    disk.makeLink("../outside", "scope/top");
    finish();
    for (const std::string& path : results()) EXPECT_THAT(path, Not(HasSubstr("secret")));
    EXPECT_THAT(results(), SizeIs(Le(16U)));
}

// Turns of the event loop.

TEST_F(LinuxFileQueryTest, GathersOnlyWhileTheLoopTurns) {
    makeFile("scope/N");
    start("N");
    EXPECT_TRUE(query->isGathering());
    EXPECT_THAT(results(), IsEmpty());
    loop.runUntilNow();
    EXPECT_FALSE(query->isGathering());
    EXPECT_THAT(results(), ElementsAre("N"));
}

TEST_F(LinuxFileQueryTest, LeavesTheLoopsOtherSourcesTheirTurns) {
    makeManyFolders();
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    ASSERT_EQ(::write(writing.get(), "x", 1), 1);
    int calls = 0;
    const Subscription other = loop.watch(reading.get(), [&] { ++calls; });
    EXPECT_THAT(found("N"), SizeIs(manyFolders));
    EXPECT_GE(calls, manyFolders / 16);
}

TEST_F(LinuxFileQueryTest, IsASourceOfTheLoopOnlyWhileItGathers) {
    makeManyFolders();
    start("N");
    EXPECT_TRUE(loop.runOnce());
    finish();
    EXPECT_FALSE(loop.runOnce());
}

TEST_F(LinuxFileQueryTest, StoppedMidwayKeepsWhatItHasAndNothingElse) {
    makeManyFolders();
    const std::size_t before = openDescriptors();
    start("N");
    loop.runUntilNow();
    ASSERT_TRUE(query->isGathering());
    const Paths soFar = results();
    EXPECT_THAT(soFar, SizeIs(AllOf(Ge(1U), Le(16U))));
    query->stop();
    EXPECT_FALSE(query->isGathering());
    EXPECT_FALSE(loop.runOnce());
    EXPECT_EQ(results(), soFar);
    EXPECT_EQ(openDescriptors(), before);
    query->stop();
    EXPECT_EQ(results(), soFar);
}

TEST_F(LinuxFileQueryTest, DestroyedMidwayLeavesNothingBehind) {
    makeManyFolders();
    const std::size_t before = openDescriptors();
    start("N");
    loop.runUntilNow();
    query.reset();
    EXPECT_FALSE(loop.runOnce());
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(LinuxFileQueryTest, StartedAgainForgetsWhatItHadFound) {
    makeManyFolders();
    makeFile("scope/M");
    start("N");
    loop.runUntilNow();
    EXPECT_THAT(found("M"), ElementsAre("M"));
    EXPECT_THAT(found("missing"), IsEmpty());
    EXPECT_THAT(found("N"), SizeIs(manyFolders));
}

TEST_F(LinuxFileQueryTest, ItsResultsStayWhenTheEntriesGo) {
    makeFile("scope/a/N");
    makeFile("scope/b/N");
    const Paths before = found("N");
    std::filesystem::remove_all(disk.path("scope"));
    loop.runUntilNow();
    EXPECT_EQ(results(), before);
}

TEST_F(LinuxFileQueryTest, AFolderThatGoesMeanwhileIsPassedOver) {
    makeManyFolders();
    start("N");
    loop.runUntilNow();
    std::filesystem::remove_all(disk.path("scope"));
    finish();
    EXPECT_THAT(results(), SizeIs(Le(16U)));
}

// Hostile trees.

TEST_F(LinuxFileQueryTest, NoDepthTakesMoreThanAFewDescriptors) {
    std::string deep = "scope";
    for (int level = 0; level < 100; ++level) deep += "/d";
    makeFile(deep + "/N");
    const std::size_t before = openDescriptors();
    start("N");
    std::size_t most = 0;
    while (query->isGathering()) {
        loop.runUntilNow();
        most = std::max(most, openDescriptors());
    }
    EXPECT_THAT(results(), SizeIs(1));
    EXPECT_LE(most, before + 4);
}

TEST_F(LinuxFileQueryTest, WhatNoPathCanNameIsNotFoundAndEndsTheDescent) {
    const std::string name(200, 'd');
    FileDescriptor folder(::open(disk.path("scope").c_str(), O_PATH | O_CLOEXEC));
    const auto levels = 2 * PATH_MAX / name.size();
    for (std::size_t level = 0; level < levels; ++level) {
        ASSERT_EQ(::mkdirat(folder.get(), name.c_str(), 0755), 0);
        ASSERT_EQ(::mkdirat(folder.get(), "N", 0755), 0);
        folder.reset(::openat(folder.get(), name.c_str(), O_PATH | O_CLOEXEC));
    }
    const Paths paths = found("N");
    EXPECT_THAT(paths, SizeIs(AllOf(Ge(15U), Le(PATH_MAX / name.size() + 1))));
    for (const std::string& path : paths) {
        struct stat status{};
        EXPECT_EQ(::lstat(disk.path("scope/" + path).c_str(), &status), 0);
    }
}

TEST_F(LinuxFileQueryTest, NoTreeTakesMoreThanTheMemoryGiven) {
    makeManyFolders();
    query = LinuxFileQueries(loop, 2000).create();
    query->setSearchScopes({disk.path("scope")});
    EXPECT_THAT(found("N"), SizeIs(AllOf(Ge(1U), Le(2000U / 64))));
    EXPECT_FALSE(query->isGathering());
    query = LinuxFileQueries(loop, 0).create();
    query->setSearchScopes({disk.path("scope")});
    EXPECT_THAT(found("*"), IsEmpty());
}

TEST_F(LinuxFileQueryTest, WithoutADescriptorToSpareItIsOverAtOnce) {
    makeFile("scope/N");
    EXPECT_EQ(inChild([this]() -> std::string {
                  const rlimit none{.rlim_cur = 3, .rlim_max = 3};
                  if (::setrlimit(RLIMIT_NOFILE, &none) != 0) return "no limit";
                  start("N");
                  if (query->isGathering()) return "gathering";
                  return query->resultCount() == 0 ? "" : "results";
              }),
              "");
}

}  // namespace
}  // namespace installer::test

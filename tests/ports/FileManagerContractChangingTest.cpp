// What a file manager promises of the operations that change something.

#include <limits>
#include <numeric>

#include <gmock/gmock.h>

#include "tests/ports/FileManagerContract.h"

namespace installer::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct CountingSink : ProgressSink {
    void bytesCopied(std::uint64_t bytes) override { sum += bytes; }
    std::uint64_t sum = 0;
};

}  // namespace

TEST_P(FileManagerContractChanging, ACopyHasEverythingThatIsInTheItem) {
    const FileTime date(std::chrono::seconds(1'000'000'000));
    for (const char* folder : {"a", "a/.hidden", "a/Tool.app"}) scene_->makeFolder(folder);
    scene_->makeFile("a/.hidden/x", "1");
    scene_->makeFile("a/Tool.app/x", "123");
    scene_->makeLink("../outside", "a/link");
    scene_->setPermissions("a/Tool.app/x", 0751);
    scene_->setModificationDate("a/Tool.app/x", date);
    scene_->setPermissions("a/Tool.app", 0700);
    ASSERT_FALSE(files().copy(path("a"), path("b"), nullptr));
    EXPECT_THAT(names("b"), ElementsAre(".hidden", "Tool.app", "link"));
    EXPECT_EQ(scene_->contents("b/.hidden/x"), "1");
    EXPECT_EQ(scene_->contents("b/Tool.app/x"), "123");
    EXPECT_EQ(scene_->linkTarget("b/link"), "../outside");
    EXPECT_EQ(files().attributes(path("b/Tool.app")).value().permissions, 0700U);
    const auto file = files().attributes(path("b/Tool.app/x"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file.value().permissions, 0751U);
    EXPECT_EQ(file.value().modificationDate, date);
    EXPECT_EQ(scene_->contents("a/Tool.app/x"), "123");
}

TEST_P(FileManagerContractChanging, ACopyOfALinkIsALinkAndLeavesItsTargetAlone) {
    scene_->makeFolder("target");
    scene_->makeLink("target", "link");
    scene_->makeLink("nowhere", "dangling");
    for (const char* name : {"link", "dangling"}) {
        ASSERT_FALSE(files().copy(path(name), path("copy"), nullptr)) << name;
        EXPECT_EQ(scene_->linkTarget("copy"), scene_->linkTarget(name));
        ASSERT_FALSE(files().remove(path("copy"))) << name;
    }
    EXPECT_THAT(names(), ElementsAre("dangling", "link", "target"));
}

TEST_P(FileManagerContractChanging, ACopyKeepsTheNamesOfOneFileTogether) {
    scene_->makeFolder("a");
    scene_->makeFile("a/one", "123");
    scene_->makeHardLink("a/one", "a/other");
    scene_->makeFile("outside", "12345");
    scene_->makeHardLink("outside", "a/inside");
    CountingSink sink;
    ASSERT_FALSE(files().copy(path("a"), path("b"), &sink));
    EXPECT_EQ(sink.sum, 8U);
    auto copy = entries("b");
    EXPECT_EQ(copy["one"].sharedFile, copy["other"].sharedFile);
    EXPECT_NE(copy["one"].sharedFile, 0U);
    EXPECT_EQ(copy["inside"].sharedFile, 0U) << "its other name is not in the item";
    auto file = files().openForWriting(path("b/one"));
    ASSERT_TRUE(file);
    ASSERT_FALSE(file.value()->write("new"));
    EXPECT_EQ(scene_->contents("b/other"), "new");
    EXPECT_EQ(scene_->contents("a/one"), "123");
}

TEST_P(FileManagerContractChanging, RemovingOneNameOfAFileLeavesTheOthers) {
    scene_->makeFile("one", "123");
    scene_->makeHardLink("one", "other");
    ASSERT_FALSE(files().remove(path("one")));
    EXPECT_EQ(scene_->contents("other"), "123");
}

TEST_P(FileManagerContractChanging, AFileThatIsMadeAnewLeavesTheOtherNamesOfTheOldOne) {
    scene_->makeFile("one", "old");
    scene_->makeHardLink("one", "other");
    ASSERT_FALSE(files().createFile(path("one"), "new"));
    EXPECT_EQ(scene_->contents("one"), "new");
    EXPECT_EQ(scene_->contents("other"), "old");
}

TEST_P(FileManagerContractChanging, AttributesBelongToTheFileWhateverItsName) {
    scene_->makeFile("one");
    scene_->makeHardLink("one", "other");
    ASSERT_FALSE(files().setAttributes(path("one"), {{}, {}, 0640}));
    EXPECT_EQ(files().attributes(path("other")).value().permissions, 0640U);
}

TEST_P(FileManagerContractChanging, OwnerGroupAndPermissionsAreSetTogether) {
    scene_->makeFile("file");
    EXPECT_FALSE(
        files().setAttributes(path("file"), {scene_->userName(), scene_->groupName(), 04750}));
    EXPECT_EQ(files().attributes(path("file")).value().permissions, 04750U);
}

TEST_P(FileManagerContractChanging, AnOwnerOrGroupThatIsNotKnownChangesNothing) {
    scene_->makeFile("file");
    scene_->setPermissions("file", 0640);
    for (const std::string name : {"no such name", "", "12345678901"}) {
        EXPECT_TRUE(files().setAttributes(path("file"), {name, {}, 0777})) << name;
        EXPECT_TRUE(files().setAttributes(path("file"), {{}, name, 0777})) << name;
    }
    EXPECT_EQ(files().attributes(path("file")).value().permissions, 0640U);
}

TEST_P(FileManagerContractChanging, TheUserCannotGiveAFileAway) {
    scene_->makeFile("file");
    scene_->setPermissions("file", 0640);
    EXPECT_EQ(files().setAttributes(path("file"), {"root", {}, 0777}),
              std::errc::operation_not_permitted);
    EXPECT_EQ(files().attributes(path("file")).value().permissions, 0640U);
}

TEST_P(FileManagerContractChanging, ACopyNeverTouchesWhatIsAtItsDestination) {
    scene_->makeFile("file", "new");
    scene_->makeFile("old", "old");
    scene_->makeFolder("folder");
    scene_->makeLink("nowhere", "dangling");
    for (const char* name : {"old", "folder", "dangling", "file"}) {
        EXPECT_EQ(files().copy(path("file"), path(name), nullptr), std::errc::file_exists) << name;
    }
    EXPECT_EQ(scene_->contents("old"), "old");
    EXPECT_THAT(names("folder"), IsEmpty());
    EXPECT_THAT(names(), ElementsAre("dangling", "file", "folder", "old"));
}

TEST_P(FileManagerContractChanging, AFailedCopyLeavesNothing) {
    scene_->makeFolder("item");
    scene_->makeFile("item/file");
    scene_->makeSpecial("item/special");
    scene_->makeFolder("closed");
    scene_->makeFile("closed/file");
    scene_->makeUnlistable("closed");
    scene_->makeFile("file");
    EXPECT_EQ(files().copy(path("missing"), path("copy"), nullptr), missing);
    EXPECT_EQ(files().copy(path("file"), path("nowhere/copy"), nullptr), missing);
    EXPECT_EQ(files().copy(path("file"), path("file/copy"), nullptr), std::errc::not_a_directory);
    EXPECT_EQ(files().copy(path("item"), path("copy"), nullptr), std::errc::invalid_argument);
    EXPECT_EQ(files().copy(path("item/special"), path("copy"), nullptr),
              std::errc::invalid_argument);
    EXPECT_EQ(files().copy(path("closed"), path("copy"), nullptr), std::errc::permission_denied);
    EXPECT_THAT(names(), ElementsAre("closed", "file", "item"));
}

// What a copy will move is what it then tells of.
TEST_P(FileManagerContractChanging, ACopyTellsTheSinkTheBytesThatWereForetold) {
    for (const char* folder : {"a", "a/.hidden", "a/Tool.app"}) scene_->makeFolder(folder);
    scene_->makeFile("outside", std::string(1000, 'x'));
    scene_->makeFile("a/one", std::string(70'000, 'x'));
    scene_->makeFile("a/.hidden/.x", "12345");
    scene_->makeFile("a/Tool.app/x", "1234567");
    scene_->makeFile("a/empty");
    scene_->makeLink("../outside", "a/link");
    EXPECT_EQ(files().bytesToCopy(path("a")), 70'012U);
    for (const char* name : {"a", "a/", "a/one", "a/empty", "a/link"}) {
        CountingSink sink;
        EXPECT_FALSE(files().copy(path(name), path("copy"), &sink)) << name;
        EXPECT_EQ(files().bytesToCopy(path(name)), sink.sum) << name;
        EXPECT_FALSE(files().remove(path("copy")));
    }
    EXPECT_EQ(files().bytesToCopy(path("missing")), 0U);
}

TEST_P(FileManagerContractChanging, RemovingTakesAllOfAnItemAndFollowsNoLink) {
    for (const char* folder : {"kept", "a", "a/b"}) scene_->makeFolder(folder);
    scene_->makeFile("kept/file", "kept");
    scene_->makeFile("a/b/file");
    scene_->makeSpecial("a/special");
    scene_->makeLink(path("kept"), "a/b/link");
    scene_->makeLink(path("kept"), "link");
    scene_->makeLink("nowhere", "dangling");
    for (const char* name : {"a", "link", "dangling"}) {
        EXPECT_FALSE(files().remove(path(name))) << name;
        EXPECT_FALSE(files().exists(path(name))) << name;
    }
    EXPECT_EQ(scene_->contents("kept/file"), "kept");
    EXPECT_EQ(files().remove(path("a")), missing);
    EXPECT_THAT(names(), ElementsAre("kept"));
}

TEST_P(FileManagerContractChanging, FoldersAreMadeWithTheirParentsAndExactPermissions) {
    scene_->makeFolder("old");
    scene_->setPermissions("old", 0711);
    EXPECT_FALSE(files().createFolders(path("old/b/c"), 0775));
    EXPECT_EQ(files().attributes(path("old/b")).value().permissions, 0775U);
    EXPECT_EQ(files().attributes(path("old/b/c")).value().permissions, 0775U);
    EXPECT_FALSE(files().createFolders(path("old"), 0777));
    EXPECT_EQ(files().attributes(path("old")).value().permissions, 0711U);
}

TEST_P(FileManagerContractChanging, MakingFoldersFollowsLinksToFolders) {
    scene_->makeFolder("folder");
    scene_->makeLink("folder", "link");
    EXPECT_FALSE(files().createFolders(path("link"), 0755));
    EXPECT_FALSE(files().createFolders(path("link/inner"), 0755));
    EXPECT_THAT(names("folder"), ElementsAre("inner"));
}

TEST_P(FileManagerContractChanging, NoFolderIsMadeWhereAnotherEntryIs) {
    scene_->makeFile("file", "kept");
    scene_->makeSpecial("special");
    scene_->makeLink("nowhere", "dangling");
    for (const char* name : {"file", "special", "dangling", "file/inner", "dangling/inner"}) {
        EXPECT_TRUE(files().createFolders(path(name), 0755)) << name;
    }
    EXPECT_THAT(names(), ElementsAre("dangling", "file", "special"));
    EXPECT_EQ(scene_->contents("file"), "kept");
}

TEST_P(FileManagerContractChanging, PermissionsAreSetExactlyAndNeverThroughALink) {
    scene_->makeFile("file", "x");
    scene_->makeSpecial("special");
    scene_->makeLink("file", "link");
    scene_->makeLink("nowhere", "dangling");
    EXPECT_FALSE(files().setAttributes(path("file"), {{}, {}, 0617}));
    EXPECT_FALSE(files().setAttributes(path("special"), {{}, {}, 0640}));
    EXPECT_FALSE(files().setAttributes(path("link"), {{}, {}, 0777}));
    EXPECT_FALSE(files().setAttributes(path("dangling"), {{}, {}, 0777}));
    EXPECT_EQ(files().attributes(path("file")).value().permissions, 0617U);
    EXPECT_EQ(files().attributes(path("special")).value().permissions, 0640U);
    EXPECT_FALSE(files().setAttributes(path("file"), {}));
    EXPECT_EQ(files().attributes(path("file")).value().permissions, 0617U);
    EXPECT_EQ(files().setAttributes(path("missing"), {{}, {}, 0777}), missing);
}

TEST_P(FileManagerContractChanging, AFileIsMadeWholeOrReplacedWhole) {
    scene_->makeFile("old", "a longer old text");
    scene_->makeFile("target", "kept");
    scene_->makeLink("target", "link");
    scene_->makeSpecial("special");
    for (const char* name : {"new", "old", "link", "special"}) {
        EXPECT_FALSE(files().createFile(path(name), "new")) << name;
        EXPECT_EQ(scene_->contents(name), "new") << name;
        EXPECT_EQ(files().attributes(path(name)).value().type, FileType::regular) << name;
    }
    EXPECT_EQ(scene_->contents("target"), "kept");
    EXPECT_FALSE(files().createFile(path("empty"), ""));
    EXPECT_EQ(scene_->contents("empty"), "");
}

TEST_P(FileManagerContractChanging, AFileThatCannotBeMadeLeavesWhatIsThere) {
    scene_->makeFolder("folder");
    scene_->makeFile("file", "kept");
    EXPECT_EQ(files().createFile(path("folder"), "new"), std::errc::is_a_directory);
    EXPECT_EQ(files().createFile(path("missing/file"), "new"), missing);
    EXPECT_EQ(files().createFile(path("file/file"), "new"), std::errc::not_a_directory);
    EXPECT_THAT(names(), ElementsAre("file", "folder"));
    EXPECT_EQ(scene_->contents("file"), "kept");
}

TEST_P(FileManagerContractChanging, WritesOverAnExistingFileWithoutEmptyingIt) {
    scene_->makeFile("file", "0123456789");
    {
        const auto file = files().openForWriting(path("file"));
        ASSERT_TRUE(file);
        EXPECT_FALSE(file.value()->write("ab"));
        EXPECT_FALSE(file.value()->write("cd"));
        EXPECT_FALSE(file.value()->write(""));
    }
    EXPECT_EQ(scene_->contents("file"), "abcd456789");
}

TEST_P(FileManagerContractChanging, CutsAnOpenedFileOffAndFillsItUp) {
    scene_->makeFile("file", "0123456789");
    const auto file = files().openForWriting(path("file"));
    ASSERT_TRUE(file);
    EXPECT_FALSE(file.value()->write("ab"));
    EXPECT_FALSE(file.value()->setSize(4));
    EXPECT_EQ(scene_->contents("file"), "ab23");
    EXPECT_FALSE(file.value()->setSize(5));
    EXPECT_EQ(scene_->contents("file"), std::string("ab23\0", 5));
    EXPECT_EQ(file.value()->setSize(std::numeric_limits<std::uint64_t>::max()),
              std::errc::file_too_large);
    EXPECT_FALSE(file.value()->setSize(0));
    EXPECT_FALSE(file.value()->write("cd"));
    EXPECT_EQ(scene_->contents("file"), std::string("\0\0cd", 4));
}

TEST_P(FileManagerContractChanging, OpensForWritingNothingButAnExistingRegularFile) {
    scene_->makeFile("target", "kept");
    scene_->makeLink("target", "link");
    scene_->makeFolder("folder");
    scene_->makeSpecial("special");
    const auto error = [&](const char* name) { return files().openForWriting(path(name)).error(); };
    EXPECT_EQ(error("missing"), missing);
    EXPECT_EQ(error("link"), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(error("folder"), std::errc::is_a_directory);
    EXPECT_EQ(error("special"), std::errc::invalid_argument);
    EXPECT_FALSE(files().exists(path("missing")));
}

TEST_P(FileManagerContractChanging, NothingChangesInAFolderOfSomebodyElse) {
    scene_->makeFile("mine", "mine");
    scene_->makeFolder("theirs");
    scene_->makeFile("theirs/file", "theirs");
    if (!scene_->makeForeign("theirs")) GTEST_SKIP() << "needs files of two users";
    const auto denied = std::errc::permission_denied;
    EXPECT_EQ(files().copy(path("mine"), path("theirs/new"), nullptr), denied);
    EXPECT_EQ(files().remove(path("theirs/file")), denied);
    EXPECT_EQ(files().createFolders(path("theirs/new"), 0755), denied);
    EXPECT_EQ(files().createFile(path("theirs/new"), "new"), denied);
    EXPECT_EQ(files().createFile(path("theirs/file"), "new"), denied);
    EXPECT_EQ(files().openForWriting(path("theirs/file")).error(), denied);
    EXPECT_EQ(files().setAttributes(path("theirs/file"), {{}, {}, 0777}),
              std::errc::operation_not_permitted);
    EXPECT_THAT(names("theirs"), ElementsAre("file"));
    EXPECT_EQ(scene_->contents("theirs/file"), "theirs");
    EXPECT_EQ(files().copy(path("theirs/file"), path("copy"), nullptr), std::error_code());
    EXPECT_EQ(scene_->contents("copy"), "theirs");
}

}  // namespace installer::test

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "install/plan/PayloadTrees.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> namesOf(const PayloadTrees::Entries* entries) {
    if (entries == nullptr) return {"unreadable"};
    std::vector<std::string> names;
    for (const TreeEntry& entry : *entries) names.push_back(entry.name);
    return names;
}

class PayloadTreesTest : public testing::Test {
  protected:
    FakePlatform fake;
    PayloadTrees trees{fake.files};
};

TEST_F(PayloadTreesTest, AFolderIsReadOnceHoweverOftenItIsAskedFor) {
    fake.memory.addFile("/top/folder/inner/file");
    EXPECT_THAT(namesOf(trees.entriesOf("/top")), ElementsAre("folder"));
    EXPECT_THAT(namesOf(trees.entriesBelow("/top", "/top/folder/inner")), ElementsAre("file"));
    EXPECT_THAT(namesOf(trees.entriesOf("/top")), ElementsAre("folder"));
    EXPECT_THAT(namesOf(trees.entriesOf("/missing")), ElementsAre("unreadable"));
    EXPECT_THAT(namesOf(trees.entriesOf("/missing")), ElementsAre("unreadable"));
    EXPECT_THAT(fake.files.looks, ElementsAre("readTree /top", "readTree /missing"));
}

// A link on the way is followed by the file manager, as it is before the end of any path.
TEST_F(PayloadTreesTest, AFolderBelowThatTheTreeDoesNotHoldIsReadByItself) {
    fake.memory.addLink("/top/link", "/elsewhere");
    EXPECT_THAT(namesOf(trees.entriesBelow("/top", "/top/link/inner")), ElementsAre("unreadable"));
    EXPECT_THAT(fake.files.looks, ElementsAre("readTree /top", "readTree /top/link/inner"));
}

TEST_F(PayloadTreesTest, AFolderBelowAnUnreadableOneIsNotReadAgain) {
    fake.memory.addFile("/top/closed/inner/file");
    fake.files.setFault([](const RecordingFileManager::Operation& operation) {
        return operation.back() == "/top/closed" ? std::make_error_code(std::errc::io_error)
                                                 : std::error_code();
    });
    EXPECT_EQ(trees.entriesBelow("/top", "/top/closed/inner"), nullptr);
    EXPECT_THAT(fake.files.looks, ElementsAre("readTree /top"));
}

TEST_F(PayloadTreesTest, VisibleEntriesAreVisitedInOrderAndPackagesAreNotEntered) {
    fake.memory.addFile("/top/z/file");
    fake.memory.addFile("/top/.hidden/file");
    fake.memory.addFile("/top/Tool.app/inner");
    fake.memory.addFile("/top/a");
    std::vector<std::string> visited;
    visitVisible(*trees.entriesOf("/top"), "/top/",
                 [&](const std::string& path, const TreeEntry&) { visited.push_back(path); });
    EXPECT_THAT(visited, ElementsAre("/top/z", "/top/z/file", "/top/Tool.app", "/top/a"));
}

TEST_F(PayloadTreesTest, AFileWithSeveralNamesCountsOnceInAnItem) {
    const auto fileOf = [](std::uint64_t bytes, std::uint64_t sharedFile) {
        TreeEntry file;
        file.type = FileType::regular;
        file.bytes = bytes;
        file.sharedFile = sharedFile;
        return file;
    };
    const TreeEntry file = fileOf(10, 1);
    TreeEntry folder;
    folder.type = FileType::folder;
    folder.entries = {file, fileOf(7, 0), fileOf(7, 0)};
    TreeEntry top;
    top.type = FileType::folder;
    top.entries = {file, folder};
    EXPECT_EQ(bytesOf(top), 24U);
    EXPECT_EQ(bytesOf(folder), 24U);
    EXPECT_EQ(bytesOf(file), 10U);
}

}  // namespace
}  // namespace installer::test

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/ScratchFolder.h"
#include "tools/installerctl/records/RecordedRemoval.h"
#include "tools/installerctl/records/TreeRecords.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

// The known hash of the three letters.
const std::string hashOfAbc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

std::vector<std::string> pathsIn(const ScratchFolder& folder,
                                 const std::vector<EntryRecord>& records) {
    std::vector<std::string> paths;
    for (const EntryRecord& record : records) {
        paths.push_back(record.path.substr(folder.path().size() + 1));
    }
    return paths;
}

TEST(TreeRecords, TellsKindModeSizeHashAndTargetOfEachEntry) {
    const ScratchFolder scratch;
    const std::string file = scratch.add("top/file", "abc");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    std::filesystem::create_symlink("nowhere", scratch / "top/link");
    const auto records = recordTree(scratch / "top", LinkPolicy::follow);
    ASSERT_TRUE(records);
    EXPECT_THAT(pathsIn(scratch, records.value()), ElementsAre("top", "top/file", "top/link"));
    EXPECT_EQ(records.value()[0].kind, EntryKind::folder);
    EXPECT_EQ(records.value()[1].contents, hashOfAbc);
    EXPECT_EQ(records.value()[1].size, 3U);
    EXPECT_EQ(records.value()[1].mode, 0640U);
    EXPECT_EQ(records.value()[2].kind, EntryKind::link);
    EXPECT_EQ(records.value()[2].contents, "nowhere");
}

TEST(TreeRecords, AFifoIsNeverOpened) {
    const ScratchFolder scratch;
    scratch.addFolder("top");
    ASSERT_EQ(::mkfifo((scratch / "top/fifo").c_str(), 0600), 0);
    const auto records = recordTree(scratch / "top", LinkPolicy::follow);
    ASSERT_TRUE(records);
    ASSERT_EQ(records.value().size(), 2U);
    EXPECT_EQ(records.value()[1].contents, "");
}

TEST(TreeRecords, WhatIsNotThereIsAnError) {
    const ScratchFolder scratch;
    EXPECT_EQ(recordTree(scratch / "nothing", LinkPolicy::follow).error(),
              std::errc::no_such_file_or_directory);
}

TEST(TreeRecordsRemoval, OnlyWhatIsAsRecordedIsRemoved) {
    const ScratchFolder scratch;
    const std::string file = scratch.add("file", "abc");
    const auto record = recordEntry(file, LinkPolicy::follow);
    ASSERT_TRUE(record);
    scratch.add("file", "abd");
    EXPECT_EQ(removeRecorded(file, {record.value()}, LinkPolicy::follow).removal, Removal::changed);
    EXPECT_TRUE(scratch.holds("file"));
    scratch.add("file", "abc");
    EXPECT_EQ(removeRecorded(file, {record.value()}, LinkPolicy::follow).removal, Removal::removed);
    EXPECT_EQ(removeRecorded(file, {record.value()}, LinkPolicy::follow).removal, Removal::missing);
}

TEST(TreeRecordsRemoval, AFolderWithMoreInItStays) {
    const ScratchFolder scratch;
    const std::string folder = scratch.addFolder("folder");
    const auto record = recordEntry(folder, LinkPolicy::follow);
    ASSERT_TRUE(record);
    scratch.add("folder/file", "x");
    EXPECT_EQ(removeRecorded(folder, {record.value()}, LinkPolicy::follow).removal,
              Removal::notEmpty);
    EXPECT_TRUE(scratch.holds("folder/file"));
}

TEST(TreeRecordsRemoval, ALinkInTheWayIsNotFollowedWhereItIsNotTrusted) {
    const ScratchFolder scratch;
    scratch.add("real/file", "abc");
    std::filesystem::create_directory_symlink(scratch / "real", scratch / "link");
    const auto record = recordEntry(scratch / "real/file", LinkPolicy::follow);
    ASSERT_TRUE(record);
    const auto outcome =
        removeRecorded(scratch / "link/file", {record.value()}, LinkPolicy::trustedOnly);
    EXPECT_EQ(outcome.removal, Removal::failed);
    EXPECT_TRUE(scratch.holds("real/file"));
}

}  // namespace
}  // namespace installer::test

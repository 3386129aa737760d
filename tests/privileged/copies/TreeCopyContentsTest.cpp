#include <algorithm>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "privileged/copies/TreeCopy.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

constexpr std::uint64_t mebibyte = 1 << 20;

std::string patternOf(std::size_t size) {
    std::string text(size, '\0');
    unsigned value = 1;
    for (char& byte : text) {
        value = value * 1664525U + 1013904223U;
        byte = static_cast<char>(value >> 24U);
    }
    return text;
}

TEST(TreeCopyContents, ABigFileArrivesWholeAndIsToldInPieces) {
    const Disk disk;
    const std::string text = patternOf(20 * mebibyte + 7);
    disk.makeFile("file", text);
    std::vector<std::uint64_t> told;
    ASSERT_FALSE(copyTree(disk.path("file"), disk.path("copy"), LinkPolicy::follow,
                          [&](std::uint64_t bytes) { told.push_back(bytes); }));
    EXPECT_TRUE(disk.contents("copy") == text);
    std::uint64_t sum = 0;
    for (const auto bytes : told) {
        EXPECT_GT(bytes, 0U);
        EXPECT_LE(bytes, mebibyte);
        sum += bytes;
    }
    EXPECT_EQ(sum, text.size());
    EXPECT_GE(told.size(), 21U);
}

TEST(TreeCopyContents, AnEmptyFileStaysEmpty) {
    const Disk disk;
    disk.makeFile("file");
    ASSERT_FALSE(copyTree(disk.path("file"), disk.path("copy"), LinkPolicy::follow,
                          [](std::uint64_t) { ADD_FAILURE() << "nothing was copied"; }));
    EXPECT_EQ(disk.contents("copy"), "");
}

TEST(TreeCopyContents, EntriesWithoutBytesAreSeenToGoOn) {
    const Disk disk;
    disk.makeFolder("folder");
    for (const char* name : {"folder/a", "folder/b"}) disk.makeFile(name);
    disk.makeLink("nowhere", "folder/c");
    int calls = 0;
    ASSERT_FALSE(copyTree(disk.path("folder"), disk.path("copy"), LinkPolicy::follow,
                          [&](std::uint64_t bytes) {
                              EXPECT_EQ(bytes, 0U);
                              ++calls;
                          }));
    EXPECT_EQ(calls, 3);
}

// The kernel refuses to copy from /proc to a disk by itself, so that this goes through a buffer.
TEST(TreeCopyContents, ProgressCountsWhatIsReadFromAFileWithoutSize) {
    const Disk disk;
    std::uint64_t told = 0;
    ASSERT_FALSE(copyTree("/proc/meminfo", disk.path("copy"), LinkPolicy::follow,
                          [&](std::uint64_t bytes) { told += bytes; }));
    EXPECT_GT(told, 0U);
    EXPECT_EQ(told, disk.contents("copy").size());
}

// From one file system to another: /dev/shm is never on the disk that holds the scratch folder
// unless that is a tmpfs too, and then the test proves the kernel's own way once more.
TEST(TreeCopyContents, ArrivesOnAnotherFileSystem) {
    const Disk disk;
    const std::string text = patternOf(3 * mebibyte + 1);
    disk.makeFile("file", text);
    std::string other = "/dev/shm/installer-test-XXXXXX";
    ASSERT_NE(mkdtemp(other.data()), nullptr);
    const auto error = copyTree(disk.path("file"), other + "/copy", LinkPolicy::follow, {});
    const auto back = copyTree(other + "/copy", disk.path("back"), LinkPolicy::follow, {});
    unlink((other + "/copy").c_str());
    rmdir(other.c_str());
    EXPECT_FALSE(error) << error.message();
    EXPECT_FALSE(back) << back.message();
    EXPECT_TRUE(disk.contents("back") == text);
}

TEST(TreeCopyContents, HolesStayHoles) {
    const Disk disk;
    const std::uint64_t size = 64 * mebibyte;
    {
        const FileDescriptor file(open(disk.path("file").c_str(), O_WRONLY | O_CREAT, 0644));
        ASSERT_EQ(pwrite(file.get(), "begin", 5, 0), 5);
        ASSERT_EQ(pwrite(file.get(), "middle", 6, 30 * mebibyte), 6);
        ASSERT_EQ(ftruncate(file.get(), static_cast<off_t>(size)), 0);
    }
    std::uint64_t told = 0;
    ASSERT_FALSE(copyTree(disk.path("file"), disk.path("copy"), LinkPolicy::follow,
                          [&](std::uint64_t bytes) { told += bytes; }));
    EXPECT_EQ(told, size);
    const auto status = disk.status("copy");
    EXPECT_EQ(static_cast<std::uint64_t>(status.st_size), size);
    EXPECT_LT(static_cast<std::uint64_t>(status.st_blocks) * 512, 2 * mebibyte);
    EXPECT_TRUE(disk.contents("copy") == disk.contents("file"));
}

TEST(TreeCopyContents, AHugeEmptyFileTakesNoTimeAndNoSpace) {
    const Disk disk;
    disk.makeFile("file");
    constexpr off_t terabyte = off_t{1} << 40;
    ASSERT_EQ(truncate(disk.path("file").c_str(), terabyte), 0);
    ASSERT_FALSE(copyTree(disk.path("file"), disk.path("copy"), LinkPolicy::follow, {}));
    EXPECT_EQ(disk.status("copy").st_size, terabyte);
    EXPECT_LT(disk.status("copy").st_blocks, 1024);
}

}  // namespace
}  // namespace installer::test

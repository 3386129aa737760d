#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "privileged/files/RegularFile.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

TEST(RegularFile, GivesTheWholeContents) {
    const ScratchFolder disk;
    const std::string bytes("a\0b\xFF\n", 5);
    const auto read = readRegularFile(disk.add("file", bytes), 100);
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value(), bytes);
}

TEST(RegularFile, TakesExactlyTheLimitAndNotAByteMore) {
    const ScratchFolder disk;
    const std::string path = disk.add("file", "12345");
    EXPECT_TRUE(readRegularFile(path, 5));
    EXPECT_EQ(readRegularFile(path, 4).error().value(), EFBIG);
}

TEST(RegularFile, ReadsFilesThatTellNoSize) {
    const auto read = readRegularFile("/proc/self/status", 1'000'000);
    ASSERT_TRUE(read);
    EXPECT_NE(read.value().find("Pid:"), std::string::npos);
}

TEST(RegularFile, RefusesWhatIsNoRegularFileWithoutWaitingForIt) {
    const ScratchFolder disk;
    EXPECT_EQ(readRegularFile(disk.addFifo("fifo"), 100).error().value(), EINVAL);
    EXPECT_EQ(readRegularFile(disk.addFolder("folder"), 100).error().value(), EISDIR);
    EXPECT_EQ(readRegularFile("/dev/zero", 100).error().value(), EINVAL);
    EXPECT_EQ(readRegularFile(disk.addSparse("huge", 1ull << 40), 100).error().value(), EFBIG);
}

TEST(RegularFile, APathWithANulNamesNothing) {
    const ScratchFolder disk;
    disk.add("file", "text");
    EXPECT_EQ(readRegularFile(disk.at("file") + std::string("\0x", 2), 100).error().value(),
              ENOENT);
    EXPECT_EQ(readRegularFile("", 100).error().value(), ENOENT);
}

TEST(RegularFile, FollowsALink) {
    const ScratchFolder disk;
    std::filesystem::create_symlink(disk.add("file", "text"), disk.at("link"));
    EXPECT_EQ(readRegularFile(disk.at("link"), 100).value(), "text");
}

TEST(RegularFile, GivesTheBeginningOfALargerFile) {
    const ScratchFolder disk;
    const std::string path = disk.add("file", "12345");
    EXPECT_EQ(readBeginning(path, 4).value(), "1234");
    EXPECT_EQ(readBeginning(path, 5).value(), "12345");
    EXPECT_EQ(readBeginning(path, 6).value(), "12345");
    EXPECT_EQ(readBeginning(path, 0).value(), "");
}

TEST(RegularFile, OpensALinkOnlyIfItMayFollowIt) {
    const ScratchFolder disk;
    std::filesystem::create_symlink(disk.add("file", "text"), disk.at("link"));
    EXPECT_TRUE(openRegularFile(AT_FDCWD, disk.at("link"), O_RDONLY));
    EXPECT_EQ(openRegularFile(AT_FDCWD, disk.at("link"), O_RDONLY | O_NOFOLLOW).error().value(),
              ELOOP);
}

}  // namespace
}  // namespace installer::test

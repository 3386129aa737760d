#include <csignal>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "privileged/copies/TreeCopy.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

std::error_code copy(const Disk& disk, const std::string& from, const std::string& to) {
    return copyTree(disk.path(from), disk.path(to), LinkPolicy::follow, {});
}

TEST(TreeCopyFailure, AnExistingDestinationStaysUntouched) {
    const Disk disk;
    disk.makeFile("file", "new");
    disk.makeFolder("folder");
    disk.makeFile("folder/file", "new");
    disk.makeFile("taken", "old", 0600);
    disk.makeFolder("taken folder");
    disk.makeLink("nowhere", "dangling");
    for (const char* from : {"file", "folder"}) {
        for (const char* to : {"taken", "taken folder", "dangling"}) {
            EXPECT_EQ(copy(disk, from, to), std::errc::file_exists) << from << " to " << to;
        }
    }
    EXPECT_EQ(disk.contents("taken"), "old");
    EXPECT_EQ(disk.mode("taken"), 0600U);
    EXPECT_TRUE(disk.names("taken folder").empty());
    EXPECT_FALSE(disk.exists("nowhere"));
    EXPECT_EQ(disk.names().size(), 5U);
}

TEST(TreeCopyFailure, NothingOfAFolderIsCopiedWhenItsDestinationIsTaken) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/file", "new");
    disk.makeFolder("taken");
    int steps = 0;
    EXPECT_EQ(copyTree(disk.path("folder"), disk.path("taken"), LinkPolicy::follow,
                       [&](std::uint64_t) { ++steps; }),
              std::errc::file_exists);
    EXPECT_EQ(steps, 0);
}

TEST(TreeCopyFailure, RefusesWhatIsNeitherFileNorFolderNorLink) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/a", "text");
    disk.makeFifo("fifo");
    disk.makeSocket("socket");
    const auto before = disk.names();
    EXPECT_EQ(copy(disk, "fifo", "copy"), std::errc::invalid_argument);
    EXPECT_EQ(copy(disk, "socket", "copy"), std::errc::invalid_argument);
    EXPECT_EQ(copyTree("/dev/null", disk.path("copy"), LinkPolicy::follow, {}),
              std::errc::invalid_argument);
    EXPECT_EQ(disk.names(), before);
}

TEST(TreeCopyFailure, OneSpecialEntryInsideRefusesTheItem) {
    using Make = void (*)(const Disk&);
    for (const Make make : {Make([](const Disk& disk) { disk.makeFifo("folder/inner/x"); }),
                            Make([](const Disk& disk) { disk.makeSocket("folder/inner/x"); })}) {
        const Disk disk;
        disk.makeFolder("folder");
        disk.makeFolder("folder/inner", 0755);
        disk.makeFile("folder/inner/a", "text");
        make(disk);
        EXPECT_EQ(copy(disk, "folder", "copy"), std::errc::invalid_argument);
        EXPECT_EQ(disk.names(), std::vector<std::string>{"folder"});
    }
}

TEST(TreeCopyFailure, ADeviceInsideRefusesTheItem) {
    const Disk disk;
    disk.makeFolder("folder");
    if (mknod(disk.path("folder/null").c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) {
        GTEST_SKIP() << "only root can make a device";
    }
    EXPECT_EQ(copy(disk, "folder", "copy"), std::errc::invalid_argument);
    EXPECT_EQ(disk.names(), std::vector<std::string>{"folder"});
}

TEST(TreeCopyFailure, AFolderIsNeverCopiedIntoItself) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFolder("folder/inner");
    disk.makeFile("folder/file", "text");
    EXPECT_EQ(copy(disk, "folder", "folder/inner/copy"), std::errc::invalid_argument);
    EXPECT_EQ(copy(disk, "folder", "folder/copy"), std::errc::invalid_argument);
    EXPECT_EQ(copy(disk, "folder", "folder"), std::errc::file_exists);
    EXPECT_EQ(disk.names("folder"), (std::vector<std::string>{"file", "inner"}));
    EXPECT_TRUE(disk.names("folder/inner").empty());
}

TEST(TreeCopyFailure, NeedsASourceAndTheParentOfTheDestination) {
    const Disk disk;
    disk.makeFile("file");
    EXPECT_EQ(copy(disk, "missing", "copy"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(copy(disk, "file", "missing/copy"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(copy(disk, "file", std::string("co\0py", 5)), std::errc::no_such_file_or_directory);
    EXPECT_EQ(copy(disk, "file", std::string(256, 'n')), std::errc::filename_too_long);
    EXPECT_EQ(copyTree("file", disk.path("copy"), LinkPolicy::follow, {}),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(disk.names(), std::vector<std::string>{"file"});
}

TEST(TreeCopyFailure, AnUnreadableFileInsideLeavesNothing) {
    const Disk disk;
    const std::string outcome = asOrdinaryUser([&] {
        disk.makeFolder("folder");
        disk.makeFolder("folder/inner");
        disk.makeFile("folder/inner/a", "text");
        disk.makeFile("folder/inner/secret", "text", 0000);
        disk.setMode("folder/inner", 0555);
        return copy(disk, "folder", "copy").message();
    });
    EXPECT_EQ(outcome, "Permission denied");
    EXPECT_EQ(disk.names(), std::vector<std::string>{"folder"});
}

TEST(TreeCopyFailure, AFolderWhereNothingMayBeMadeStaysAsItIs) {
    const Disk disk;
    const std::string outcome = asOrdinaryUser([&] {
        disk.makeFile("file", "text");
        disk.makeFolder("closed", 0555);
        return copy(disk, "file", "closed/copy").message();
    });
    EXPECT_EQ(outcome, "Permission denied");
    EXPECT_TRUE(disk.names("closed").empty());
}

TEST(TreeCopyFailure, AFileThatMayNotGrowLeavesNothing) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/a", "text");
    disk.makeFile("folder/big", std::string(300'000, 'x'));
    const std::string outcome = inChild([&] {
        const rlimit small = {100'000, 100'000};
        setrlimit(RLIMIT_FSIZE, &small);
        std::signal(SIGXFSZ, SIG_IGN);
        return copy(disk, "folder", "copy").message() + ", " +
               copy(disk, "folder/big", "copy").message();
    });
    EXPECT_EQ(outcome, "File too large, File too large");
    EXPECT_EQ(disk.names(), std::vector<std::string>{"folder"});
}

TEST(TreeCopyFailure, AFullDiskLeavesNothing) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can mount a small disk";
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeFile("folder/a", "text");
    disk.makeFile("folder/big", std::string(900'000, 'x'));
    disk.makeFolder("small");
    const std::string outcome = inChild([&]() -> std::string {
        // The mount is seen by this child only, and ends with it.
        if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", disk.path("small").c_str(), "tmpfs", 0, "size=256k") != 0) {
            return "<no private mount>";
        }
        const auto whole = copy(disk, "folder", "small/copy");
        const auto file = copy(disk, "folder/big", "small/copy");
        const auto little = copy(disk, "folder/a", "small/copy");
        return whole.message() + ", " + file.message() + ", " + little.message() + ", " +
               std::to_string(disk.names("small").size());
    });
    EXPECT_EQ(outcome, "No space left on device, No space left on device, Success, 1");
}

}  // namespace
}  // namespace installer::test

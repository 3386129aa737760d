#include <cerrno>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "privileged/files/ExclusiveRename.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/privileged/system/RefusedCalls.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

using Rename = std::error_code (*)(int, const std::string&, int, const std::string&);

struct RefusedCall {
    long number;
    int error;
};

struct Way {
    const char* name;
    Rename rename;
    std::vector<RefusedCall> refused = {};  ///< by the kernel or by the file system
};

void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

class ExclusiveRename : public testing::TestWithParam<Way> {
  protected:
    std::errc rename(const std::string& from, const std::string& to,
                     const std::vector<RefusedCall>& furtherRefused = {}) {
        const FileDescriptor folder(open(disk_.path().c_str(), O_PATH | O_CLOEXEC));
        const std::string error = inChild([&] {
            for (const auto& calls : {GetParam().refused, furtherRefused}) {
                for (const RefusedCall& call : calls) {
                    if (!refuseSystemCall(call.number, call.error)) return std::string("-1");
                }
            }
            const auto slash = to.find('/');
            const bool isBelow = slash != std::string::npos;
            const std::string below = disk_.path(isBelow ? to.substr(0, slash) : "");
            const FileDescriptor target(open(below.c_str(), O_PATH | O_CLOEXEC));
            const std::string name = isBelow ? to.substr(slash + 1) : to;
            const auto failed = GetParam().rename(folder.get(), from, target.get(), name);
            return std::to_string(failed.value());
        });
        return static_cast<std::errc>(std::stoi(error));
    }

    static constexpr std::errc success{};
    Disk disk_;
};

TEST_P(ExclusiveRename, MovesAFile) {
    disk_.makeFile("old", "text", 0640);
    EXPECT_EQ(rename("old", "new"), success);
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"new"});
    EXPECT_EQ(disk_.contents("new"), "text");
    EXPECT_EQ(disk_.mode("new"), 0640U);
}

TEST_P(ExclusiveRename, MovesAFolderWithItsContents) {
    disk_.makeFolder("old", 0500);
    disk_.setMode("old", 0700);
    disk_.makeFile("old/inside", "text");
    disk_.setMode("old", 0500);
    EXPECT_EQ(rename("old", "new"), success);
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"new"});
    EXPECT_EQ(disk_.contents("new/inside"), "text");
    EXPECT_EQ(disk_.mode("new"), 0500U);
}

TEST_P(ExclusiveRename, MovesADanglingLink) {
    disk_.makeLink("nowhere", "old");
    EXPECT_EQ(rename("old", "new"), success);
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"new"});
    EXPECT_EQ(disk_.linkTarget("new"), "nowhere");
}

TEST_P(ExclusiveRename, RefusesAnExistingEntryOfEveryType) {
    disk_.makeFile("file", "new");
    disk_.makeFolder("folder");
    disk_.makeFile("taken file", "kept");
    disk_.makeFolder("taken folder");
    disk_.makeLink("nowhere", "taken link");
    for (const char* from : {"file", "folder"}) {
        for (const char* to : {"taken file", "taken folder", "taken link"}) {
            EXPECT_EQ(rename(from, to), std::errc::file_exists) << from << " to " << to;
        }
    }
    EXPECT_EQ(disk_.names().size(), 5U);
    EXPECT_EQ(disk_.contents("taken file"), "kept");
}

TEST_P(ExclusiveRename, SaysWhenThereIsNothingToMove) {
    EXPECT_EQ(rename("missing", "new"), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(disk_.names().empty());
}

TEST_P(ExclusiveRename, AFailureLeavesNothingUnderTheNewName) {
    disk_.makeFolder("old");
    EXPECT_EQ(rename("old", "old/new"), std::errc::invalid_argument);
    EXPECT_TRUE(disk_.names("old").empty());
}

// The disk fails after the name has been claimed.
TEST_P(ExclusiveRename, NoClaimIsLeftWhenTheRenameItselfFails) {
    disk_.makeFile("file", "kept");
    disk_.makeFolder("folder");
    for (const char* from : {"file", "folder"}) {
        EXPECT_EQ(rename(from, "new",
                         {{SYS_renameat2, EINVAL}, {SYS_linkat, EPERM}, {SYS_renameat, EIO}}),
                  std::errc::io_error)
            << from;
    }
    EXPECT_EQ(disk_.names(), (std::vector<std::string>{"file", "folder"}));
    EXPECT_EQ(disk_.contents("file"), "kept");
}

TEST_P(ExclusiveRename, AnotherFailureOfALinkIsTold) {
    disk_.makeFile("file", "kept");
    EXPECT_EQ(rename("file", "new", {{SYS_renameat2, EINVAL}, {SYS_linkat, ENOSPC}}),
              std::errc::no_space_on_device);
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"file"});
}

TEST_P(ExclusiveRename, AClaimThatFailsIsTold) {
    disk_.makeFolder("folder");
    EXPECT_EQ(rename("folder", "new", {{SYS_renameat2, EINVAL}, {SYS_mkdirat, ENOSPC}}),
              std::errc::no_space_on_device);
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"folder"});
}

std::vector<Way> everyWay() {
    const auto withoutHardLinks = [](const char* name, int error) {
        return Way{name, renameWithoutReplacing, {{SYS_renameat2, EINVAL}, {SYS_linkat, error}}};
    };
    return {
        Way{"InOneCall", renameWithoutReplacing},
        Way{"AfterClaiming", renameAfterClaiming},
        Way{"OnAnOldKernel", renameWithoutReplacing, {{SYS_renameat2, ENOSYS}}},
        Way{"OnAFileSystemThatAlwaysReplaces", renameWithoutReplacing, {{SYS_renameat2, EINVAL}}},
        withoutHardLinks("WhereHardLinksAreForbidden", EPERM),
        withoutHardLinks("WhereHardLinksAreNotSupported", EOPNOTSUPP),
        withoutHardLinks("WhereHardLinksAreUnknown", ENOSYS),
        withoutHardLinks("WhereTheFileHasAllItsLinks", EMLINK)};
}

INSTANTIATE_TEST_SUITE_P(Ways, ExclusiveRename, testing::ValuesIn(everyWay()),
                         [](const auto& way) { return way.param.name; });

TEST(ExclusiveRenameInOneCall, TellsEveryOtherFailure) {
    const Disk disk;
    disk.makeFile("file", "kept");
    EXPECT_EQ(
        inChild([&] {
            if (!refuseSystemCall(SYS_renameat2, EROFS)) return std::string("not refused");
            const FileDescriptor folder(open(disk.path().c_str(), O_PATH | O_CLOEXEC));
            return renameWithoutReplacing(folder.get(), "file", folder.get(), "new").message();
        }),
        "Read-only file system");
    EXPECT_EQ(disk.names(), std::vector<std::string>{"file"});
}

}  // namespace
}  // namespace installer::test

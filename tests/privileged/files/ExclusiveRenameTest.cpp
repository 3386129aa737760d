#include <fcntl.h>
#include <gtest/gtest.h>

#include "privileged/files/ExclusiveRename.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

using Rename = std::error_code (*)(int, const std::string&, int, const std::string&);

struct Way {
    const char* name;
    Rename rename;
};

class ExclusiveRename : public testing::TestWithParam<Way> {
  protected:
    std::error_code rename(const std::string& from, const std::string& to) {
        const FileDescriptor folder(open(disk_.path().c_str(), O_PATH | O_CLOEXEC));
        return GetParam().rename(folder.get(), from, folder.get(), to);
    }

    Disk disk_;
};

TEST_P(ExclusiveRename, MovesAFile) {
    disk_.makeFile("old", "text", 0640);
    EXPECT_FALSE(rename("old", "new"));
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"new"});
    EXPECT_EQ(disk_.contents("new"), "text");
    EXPECT_EQ(disk_.mode("new"), 0640U);
}

TEST_P(ExclusiveRename, MovesAFolderWithItsContents) {
    disk_.makeFolder("old", 0500);
    disk_.setMode("old", 0700);
    disk_.makeFile("old/inside", "text");
    disk_.setMode("old", 0500);
    EXPECT_FALSE(rename("old", "new"));
    EXPECT_EQ(disk_.names(), std::vector<std::string>{"new"});
    EXPECT_EQ(disk_.contents("new/inside"), "text");
    EXPECT_EQ(disk_.mode("new"), 0500U);
}

TEST_P(ExclusiveRename, MovesADanglingLink) {
    disk_.makeLink("nowhere", "old");
    EXPECT_FALSE(rename("old", "new"));
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
    const FileDescriptor folder(open(disk_.path().c_str(), O_PATH | O_CLOEXEC));
    const FileDescriptor inside(open(disk_.path("old").c_str(), O_PATH | O_CLOEXEC));
    EXPECT_EQ(GetParam().rename(folder.get(), "old", inside.get(), "new"),
              std::errc::invalid_argument);
    EXPECT_TRUE(disk_.names("old").empty());
}

INSTANTIATE_TEST_SUITE_P(Ways, ExclusiveRename,
                         testing::Values(Way{"InOneCall", renameWithoutReplacing},
                                         Way{"AfterClaiming", renameAfterClaiming}),
                         [](const auto& way) { return way.param.name; });

}  // namespace
}  // namespace installer::test

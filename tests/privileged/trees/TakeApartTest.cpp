#include <cerrno>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "privileged/system/FileDescriptor.h"
#include "privileged/trees/TakeApart.h"
#include "tests/privileged/system/RefusedCalls.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

class TakeApart : public testing::Test {
  protected:
    void SetUp() override {
        disk_.makeFolder("folder");
        disk_.makeFolder("folder/inner");
        disk_.makeFile("folder/inner/file");
        disk_.makeFile("file");
    }
    std::error_code takenApart(const std::string& name) {
        const FileDescriptor parent(open(disk_.path().c_str(), O_PATH | O_CLOEXEC));
        return takeApart(parent.get(), name);
    }
    /// What comes of it while a system call fails with that error.
    std::string takenApartWithout(long call, int error, const std::string& name) {
        return inChild([&] {
            const FileDescriptor parent(open(disk_.path().c_str(), O_PATH | O_CLOEXEC));
            if (!refuseSystemCall(call, error)) return std::string("not refused");
            return takeApart(parent.get(), name).message();
        });
    }

    Disk disk_;
};

TEST_F(TakeApart, RemovesAFileAndAFolderWithAllThatIsInIt) {
    EXPECT_FALSE(takenApart("file"));
    EXPECT_FALSE(takenApart("folder"));
    EXPECT_TRUE(disk_.names().empty());
}

TEST_F(TakeApart, IsDoneWhenNothingIsThere) {
    EXPECT_FALSE(takenApart("missing"));
}

// Another process may clear the same dead temporary.
TEST_F(TakeApart, EntriesThatSomebodyElseRemovesMeanwhileAreNoFailure) {
    EXPECT_EQ(takenApartWithout(SYS_unlinkat, ENOENT, "file"), "Success");
    EXPECT_EQ(takenApartWithout(SYS_unlinkat, ENOENT, "folder"), "Success");
}

TEST_F(TakeApart, EveryOtherFailureIsTold) {
    EXPECT_EQ(takenApartWithout(SYS_unlinkat, EIO, "file"), "Input/output error");
    EXPECT_EQ(takenApartWithout(SYS_unlinkat, EIO, "folder"), "Input/output error");
}

TEST_F(TakeApart, AFolderThatIsStillThereIsNotTakenForGone) {
    EXPECT_EQ(takenApartWithout(SYS_openat, ENOENT, "folder"), "No such file or directory");
    EXPECT_TRUE(disk_.exists("folder"));
}

}  // namespace
}  // namespace installer::test

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/wall/KernelWall.h"
#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

using testing::HasSubstr;

/// Whatever the helper could be made to do is done here, by system calls of the test's own.
class KernelWall : public PrivilegedHelperProgram {
  protected:
    void SetUp() override {
        PrivilegedHelperProgram::SetUp();
        if (IsSkipped()) return;
        folder.add("into/old", "old");
        folder.add("outside/file", "kept");
        ASSERT_EQ(::mknod((folder / "outside/device").c_str(), S_IFCHR | 0666, makedev(1, 3)), 0);
        if (behindTheWall([] { return 0; }) == noWall) {
            GTEST_SKIP() << "NOT TESTED: no mount namespace to be had here";
        }
    }

    static constexpr int noWall = 255;

    /// What `act` gives, in a process that can write below "into" alone. `noWall` without a wall.
    int behindTheWall(const std::function<int()>& act) { return behindTheWall(act, {"into"}); }
    int behindTheWall(const std::function<int()>& act, const std::vector<std::string>& names) {
        std::vector<std::string> folders;
        for (const std::string& name : names) folders.push_back(folder / name);
        const pid_t child = ::fork();
        if (child == 0) {
            const auto missing = raiseKernelWall(folders, Devices::closed);
            giveUpOtherRights();
            ::_exit(missing ? noWall : act());
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// The number of the error that the call fails with behind the wall; 0 if it succeeds.
    int errorOf(const std::function<int()>& call) {
        return behindTheWall([&call] { return call() >= 0 ? 0 : errno; });
    }

    static int create(const std::string& path) {
        return ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    }
};

TEST_F(KernelWall, LeavesTheFoldersAsTheyAre) {
    const std::string into = folder / "into";
    EXPECT_EQ(errorOf([&] { return create(into + "/new"); }), 0);
    EXPECT_EQ(errorOf([&] { return ::chown((into + "/old").c_str(), nobody, nobody); }), 0);
    EXPECT_EQ(errorOf([&] { return ::mkdir((into + "/made").c_str(), 0755); }), 0);
    EXPECT_EQ(errorOf([&] {
                  return ::rename((into + "/new").c_str(), (into + "/made/renamed").c_str());
              }),
              0);
    EXPECT_TRUE(folder.holds("into/made/renamed"));
}

TEST_F(KernelWall, KeepsEveryWayToWriteFromWhatLiesOutside) {
    const std::string file = folder / "outside/file";
    const std::string into = folder / "into";
    EXPECT_EQ(errorOf([&] { return create(folder / "outside/new"); }), EROFS);
    EXPECT_EQ(errorOf([&] { return create(file); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::unlink(file.c_str()); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::chmod(file.c_str(), 0777); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::chown(file.c_str(), nobody, nobody); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::truncate(file.c_str(), 0); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::utimensat(AT_FDCWD, file.c_str(), nullptr, 0); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::mkdir((folder / "new").c_str(), 0755); }), EROFS);
    EXPECT_EQ(errorOf([&] { return ::rename(file.c_str(), (into + "/taken").c_str()); }), EXDEV);
    EXPECT_EQ(errorOf([&] { return ::link(file.c_str(), (into + "/same").c_str()); }), EXDEV);
    EXPECT_EQ(errorOf([&] { return create("/etc/installer-test"); }), EROFS);
    EXPECT_EQ(contentsOf(file), "kept");
    EXPECT_FALSE(folder.holds("outside/new"));
}

TEST_F(KernelWall, OpensNoDeviceAndMakesNone) {
    const std::string device = folder / "outside/device";
    EXPECT_EQ(errorOf([&] { return ::open(device.c_str(), O_RDWR | O_CLOEXEC); }), EACCES);
    EXPECT_EQ(errorOf([&] {
                  return ::mknod((folder / "into/device").c_str(), S_IFBLK | 0666, makedev(8, 0));
              }),
              EPERM);
}

TEST_F(KernelWall, CannotBeTakenDownFromWithin) {
    EXPECT_EQ(errorOf([] { return ::mount("none", "/", nullptr, MS_REMOUNT | MS_BIND, nullptr); }),
              EPERM);
    EXPECT_EQ(errorOf([] { return ::umount2("/", MNT_DETACH); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::unshare(CLONE_NEWNS); }), EPERM);
    EXPECT_EQ(errorOf([] { return ::chroot("/"); }), EPERM);
    EXPECT_EQ(errorOf([&] { return ::kill(1, SIGKILL) == 0 || errno == EPERM ? 0 : -1; }), 0)
        << "the first process ignores the signal, and nothing else may be tried here";
}

TEST_F(KernelWall, IsNotSeenByAnybodyElse) {
    EXPECT_EQ(behindTheWall([] { return 0; }), 0);
    folder.add("outside/later", "");
    EXPECT_TRUE(folder.holds("outside/later"));
}

TEST_F(KernelWall, LetsTheNearestExistingFolderStandForAMissingOne) {
    const std::vector<std::string> names = {"into/not/yet", "into/not/yet/deeper", "into"};
    EXPECT_EQ(behindTheWall([&] { return create(folder / "into/new") >= 0 ? 0 : errno; }, names),
              0);
    EXPECT_EQ(behindTheWall([&] { return create(folder / "outside/n") >= 0 ? 0 : errno; }, names),
              EROFS);
}

TEST_F(KernelWall, KeepsAFolderWithinAnother) {
    folder.add("into/inner/file", "");
    const std::vector<std::string> names = {"into/inner", "into"};
    for (const char* name : {"into/inner/new", "into/new"}) {
        EXPECT_EQ(behindTheWall([&] { return create(folder / name) >= 0 ? 0 : errno; }, names), 0);
    }
    // Within one mount a rename is possible.
    EXPECT_EQ(behindTheWall(
                  [&] {
                      return ::rename((folder / "into/new").c_str(),
                                      (folder / "into/inner/moved").c_str()) == 0
                                 ? 0
                                 : errno;
                  },
                  names),
              0);
}

TEST_F(KernelWall, IsLeftOutForTheRoot) {
    const pid_t child = ::fork();
    if (child == 0) {
        const auto missing = raiseKernelWall({folder / "into", "/"}, Devices::closed);
        const bool isOpen = create(folder / "outside/new") >= 0;
        ::_exit(missing && missing->find("root") != std::string::npos && isOpen ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(KernelWall, IsSaidToBeMissingWhereItIsForbidden) {
    const pid_t child = ::fork();
    if (child == 0) {
        giveUpOtherRights();
        const auto missing = raiseKernelWall({folder / "into"}, Devices::closed);
        const bool isOpen = create(folder / "outside/new") >= 0;
        ::_exit(missing && missing->starts_with("unshare: ") && isOpen ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

// The real helper.

TEST_F(KernelWall, StandsAroundTheHelper) {
    WriteGrant grant;
    grant.addFolder(folder / "into");
    HelperProcess::Start start;
    start.grant = grant;
    HelperProcess helper(start);
    ASSERT_TRUE(helper.saysHello());
    const std::string status = contentsOf(procFile(helper, "status"));
    EXPECT_THAT(status, HasSubstr("NoNewPrivs:\t1"));
    // CHOWN, DAC_OVERRIDE, FOWNER, FSETID, SETGID, SETUID.
    for (const char* set : {"CapPrm", "CapEff", "CapBnd"}) {
        EXPECT_THAT(status, HasSubstr(std::string(set) + ":\t00000000000000db"));
    }
    EXPECT_THAT(status, HasSubstr("CapInh:\t0000000000000000"));
    std::ifstream mounts(procFile(helper, "mountinfo"));
    int writable = 0;
    for (std::string line; std::getline(mounts, line);) {
        if (line.find(" ro,") != std::string::npos) continue;
        EXPECT_THAT(line, HasSubstr(folder / "into "));
        ++writable;
    }
    EXPECT_EQ(writable, 1);
}

/// Whether nobody who sees what the process sees can write there.
bool isReadOnlyFor(const std::string& process, const std::string& path) {
    struct statvfs status = {};
    EXPECT_EQ(::statvfs((process + "/root" + path).c_str(), &status), 0) << path;
    return (status.f_flag & ST_RDONLY) != 0;
}

/// The processes whose parent it is.
std::vector<pid_t> childrenOf(pid_t parent) {
    std::vector<pid_t> children;
    const std::string process = std::to_string(parent);
    std::ifstream file("/proc/" + process + "/task/" + process + "/children");
    for (pid_t child = 0; file >> child;) children.push_back(child);
    return children;
}

TEST_F(KernelWall, StandsAroundTheProcessThatRenewsTheDesktopDatabase) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const std::vector<pid_t> children = childrenOf(helper.process());
    ASSERT_EQ(children.size(), 1U);
    const std::string process = "/proc/" + std::to_string(children.front());
    // It may not have got as far as the helper.
    while (contentsOf(process + "/status").find("NoNewPrivs:\t1") == std::string::npos) {
        ::sched_yield();
    }
    EXPECT_THAT(contentsOf(process + "/status"), HasSubstr("CapEff:\t00000000000000db"));
    EXPECT_TRUE(isReadOnlyFor(process, "/etc"));
    EXPECT_FALSE(isReadOnlyFor("/proc/self", "/etc")) << "this proves nothing";
    for (const char* stream : {"0", "1", "2"}) {
        EXPECT_EQ(std::filesystem::read_symlink(process + "/fd/" + stream), "/dev/null");
    }
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
    EXPECT_FALSE(std::filesystem::exists(process)) << "the helper ends last";
}

}  // namespace
}  // namespace installer::test

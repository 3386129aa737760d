#include <cerrno>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "privileged/files/Location.h"
#include "tests/privileged/system/RefusedCalls.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

constexpr LinkPolicy eachPolicy[] = {LinkPolicy::follow, LinkPolicy::trustedOnly};

bool isSameFolder(int folder, const std::string& path) {
    struct stat left = {};
    struct stat right = {};
    return fstat(folder, &left) == 0 && stat(path.c_str(), &right) == 0 &&
           left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

TEST(Location, IsTheOpenedParentAndTheName) {
    const Disk disk;
    disk.makeFolder("folder");
    for (const auto policy : eachPolicy) {
        const auto location = locate(disk.path("folder/entry"), policy);
        ASSERT_TRUE(location) << location.error().message();
        EXPECT_EQ(location.value().name, "entry");
        EXPECT_TRUE(isSameFolder(location.value().parent.get(), disk.path("folder")));
    }
}

TEST(Location, TakesRunsOfSeparatorsForOne) {
    const Disk disk;
    disk.makeFolder("folder");
    for (const auto policy : eachPolicy) {
        const auto location = locate("//" + disk.path("folder//./entry//"), policy);
        ASSERT_TRUE(location) << location.error().message();
        EXPECT_EQ(location.value().name, "entry");
        EXPECT_TRUE(isSameFolder(location.value().parent.get(), disk.path("folder")));
    }
}

TEST(Location, IsFoundDirectlyBelowTheRoot) {
    for (const auto policy : eachPolicy) {
        const auto location = locate("/entry", policy);
        ASSERT_TRUE(location);
        EXPECT_EQ(location.value().name, "entry");
        EXPECT_TRUE(isSameFolder(location.value().parent.get(), "/"));
    }
}

TEST(Location, RefusesPathsThatNameNothing) {
    const Disk disk;
    for (const auto policy : eachPolicy) {
        for (const std::string& path :
             {std::string(), std::string("relative"), std::string("./a"),
              disk.path(std::string("a\0b", 3)), disk.path("missing/entry")}) {
            EXPECT_EQ(locate(path, policy).error(), std::errc::no_such_file_or_directory) << path;
        }
    }
}

TEST(Location, RefusesTheRootAndDotsAsLastComponent) {
    const Disk disk;
    for (const auto policy : eachPolicy) {
        for (const std::string& path : {std::string("/"), std::string("///"), disk.path("."),
                                        disk.path(".."), disk.path("../")}) {
            EXPECT_EQ(locate(path, policy).error(), std::errc::invalid_argument) << path;
        }
    }
}

TEST(Location, NeedsAFolderAsParent) {
    const Disk disk;
    disk.makeFile("file");
    for (const auto policy : eachPolicy) {
        EXPECT_EQ(locate(disk.path("file/entry"), policy).error(), std::errc::not_a_directory);
    }
}

TEST(Location, FollowsAnyLinkWhenAsked) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeLink("folder", "link");
    const auto location = locate(disk.path("link/../link/entry"), LinkPolicy::follow);
    ASSERT_TRUE(location);
    EXPECT_TRUE(isSameFolder(location.value().parent.get(), disk.path("folder")));
}

TEST(Location, DoesNotFollowALinkThatIsTheEntry) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeLink("folder", "link");
    for (const auto policy : eachPolicy) {
        const auto location = locate(disk.path("link"), policy);
        ASSERT_TRUE(location);
        EXPECT_EQ(location.value().name, "link");
        EXPECT_TRUE(isSameFolder(location.value().parent.get(), disk.path()));
    }
}

// The scratch folder lies below one where everybody may write, whoever owns the link.
TEST(Location, RefusesALinkWhereOthersCanWrite) {
    const Disk disk;
    disk.makeFolder("folder", 0755);
    disk.makeFolder("folder/inner", 0755);
    disk.makeLink("inner", "folder/link");
    disk.makeLink("/usr", "absolute");
    EXPECT_EQ(locate(disk.path("folder/link/entry"), LinkPolicy::trustedOnly).error(),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(locate(disk.path("absolute/entry"), LinkPolicy::trustedOnly).error(),
              std::errc::too_many_symbolic_link_levels);
}

TEST(Location, RefusesParentComponentsWhereOthersCanWrite) {
    const Disk disk;
    disk.makeFolder("folder");
    EXPECT_EQ(locate(disk.path("folder/../entry"), LinkPolicy::trustedOnly).error(),
              std::errc::invalid_argument);
    EXPECT_TRUE(locate(disk.path("folder/..entry../a"), LinkPolicy::trustedOnly).error() ==
                std::errc::no_such_file_or_directory);
    EXPECT_TRUE(locate(disk.path("folder/..entry.."), LinkPolicy::trustedOnly));
}

TEST(Location, FollowsALinkThatOnlyRootCanHaveMade) {
    struct stat status = {};
    ASSERT_EQ(lstat("/bin", &status), 0);
    ASSERT_TRUE(S_ISLNK(status.st_mode)) << "this system's /bin is no link";
    const auto location = locate("/bin/entry", LinkPolicy::trustedOnly);
    ASSERT_TRUE(location) << location.error().message();
    EXPECT_TRUE(isSameFolder(location.value().parent.get(), "/usr/bin"));
    // One whose target is absolute, or goes up.
    ASSERT_EQ(lstat("/var/run", &status), 0);
    ASSERT_TRUE(S_ISLNK(status.st_mode)) << "this system's /var/run is no link";
    const auto absolute = locate("/var/run/entry", LinkPolicy::trustedOnly);
    ASSERT_TRUE(absolute) << absolute.error().message();
    EXPECT_TRUE(isSameFolder(absolute.value().parent.get(), "/run"));
}

TEST(Location, RefusesTheLinksOfProcWhichLeadWhereAProcessHasGone) {
    for (const char* path : {"/proc/self/cwd/entry", "/proc/self/root/tmp/entry",
                             "/proc/self/entry", "/proc/self/fd/0/entry"}) {
        EXPECT_EQ(locate(path, LinkPolicy::trustedOnly).error(),
                  std::errc::too_many_symbolic_link_levels)
            << path;
    }
}

TEST(Location, AFolderIsOpenedThroughItsLinkByTheSamePolicy) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeLink("folder", "link");
    const auto folder = openFolder(disk.path("link"), LinkPolicy::follow);
    ASSERT_TRUE(folder);
    EXPECT_TRUE(isSameFolder(folder.value().get(), disk.path("folder")));
    EXPECT_EQ(openFolder(disk.path("link"), LinkPolicy::trustedOnly).error(),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_TRUE(openFolder("/bin", LinkPolicy::trustedOnly));
    EXPECT_TRUE(openFolder("/", LinkPolicy::trustedOnly));
}

/// What the kernel without the call that opens a whole path at once leads to.
std::string locatedWithout(int error, const std::string& path, const std::string& folder) {
    return inChild([&]() -> std::string {
        if (!refuseSystemCall(SYS_openat2, error)) return "not refused";
        const auto location = locate(path, LinkPolicy::trustedOnly);
        if (!location) return location.error().message();
        return isSameFolder(location.value().parent.get(), folder) ? "found" : "another folder";
    });
}

// Older kernels do not know the call, and some sandboxes forbid it.
TEST(Location, IsTheSameWithoutTheCallThatOpensAWholePathAtOnce) {
    const Disk disk;
    disk.makeFolder("folder");
    disk.makeLink("folder", "link");
    for (const int error : {ENOSYS, EPERM}) {
        EXPECT_EQ(locatedWithout(error, disk.path("folder/entry"), disk.path("folder")), "found");
        EXPECT_EQ(locatedWithout(error, "/bin/entry", "/usr/bin"), "found");
        EXPECT_EQ(locatedWithout(error, disk.path("link/entry"), disk.path("folder")),
                  "Too many levels of symbolic links");
        EXPECT_EQ(locatedWithout(error, disk.path("missing/entry"), disk.path("missing")),
                  "No such file or directory");
    }
    EXPECT_EQ(locatedWithout(EMFILE, disk.path("folder/entry"), disk.path("folder")),
              "Too many open files");
}

TEST(Location, EndsInALoopOfLinks) {
    const Disk disk;
    disk.makeLink("b", "a");
    disk.makeLink("a", "b");
    for (const auto policy : eachPolicy) {
        EXPECT_EQ(locate(disk.path("a/entry"), policy).error(),
                  std::errc::too_many_symbolic_link_levels);
    }
}

}  // namespace
}  // namespace installer::test

// The tools of an installation, run in the process of an installer that is root and, for the same
// requests, in the privileged helper.

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <dirent.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "linux/rights/LinuxAuthorization.h"
#include "linux/rights/RootTools.h"
#include "tests/privileged/wall/PolicyRows.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

enum class RootWay { inThisProcess, throughTheHelper };

class RootToolsTest : public testing::Test {
  protected:
    void SetUp() override {
        if (::getuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root";
        ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    }

    std::unique_ptr<Authorization> obtained(RootWay way) {
        AdministratorAccess access;
        access.helper.path = way == RootWay::throughTheHelper ? PRIVILEGED_HELPER : "";
        AdministratorMeans means;
        means.isRoot = way == RootWay::inThisProcess;
        // It asks nothing, and starts the helper as sudo does for root.
        means.sudo = folder.add("bin/sudo", "#!/bin/sh\nshift 2\nSUDO_UID=0 exec \"$@\"\n");
        EXPECT_EQ(::chmod(means.sudo.c_str(), 0755), 0);
        access.means = [means] { return means; };
        auto authorization = LinuxAuthorizations(access).create();
        EXPECT_TRUE(authorization->obtain(Authorization::extendRights));
        authorization->limitTo(grant());
        return authorization;
    }

    /// The test's folder but for what it calls unplanned, and folders of the system.
    [[nodiscard]] WriteGrant grant() const {
        WriteGrant grant;
        grant.addFolder("/");
        for (const std::string path : {"/etc", "/usr", "/boot"}) grant.addDestination(path);
        for (const char* name : {"source", "target", "file", "copy"}) {
            grant.addDestination(folder / name);
        }
        return grant;
    }

    static bool succeeds(Authorization& authorization, const std::string& tool,
                         const ToolArguments& arguments) {
        const PrivilegedLaunch launch = authorization.execute(tool, arguments);
        EXPECT_EQ(launch.status, 0) << tool;
        if (!launch.tool) return false;
        launch.tool->waitUntilEnded();
        EXPECT_EQ(launch.tool->status(), 0) << tool;
        return launch.tool->hasSucceeded();
    }

    ScratchFolder folder;
};

// The table, on both ways.

class RootToolsPolicy : public RootToolsTest, public testing::WithParamInterface<RootWay> {
  protected:
    /// The row's arguments with paths on this disk, and for this user.
    [[nodiscard]] ToolArguments here(const PolicyRow& row) const {
        ToolArguments arguments = row.arguments;
        for (std::string& argument : arguments) {
            if (argument == otherPath) argument = folder / "source";
            if (argument == somePath) argument = folder / "target";
            if (argument == "nobody:admin") argument = "root:admin";
        }
        return arguments;
    }

    /// What each row finds on the disk.
    void prepare(const PolicyRow& row) const {
        std::filesystem::remove_all(folder / "target");
        folder.add("source", "new");
        if (row.action != Action::copy && row.action != Action::makeFolders) {
            folder.add("target", "old");
        }
    }

    /// The entries of the disk with their contents, owners and modes.
    [[nodiscard]] std::string disk() const {
        std::string text;
        for (const std::string& name : folder.names("")) {
            struct stat status = {};
            EXPECT_EQ(::lstat((folder / name).c_str(), &status), 0);
            text += name + ' ' + std::to_string(status.st_uid) + ' ' +
                    std::to_string(status.st_mode) + ' ' + std::to_string(status.st_mtim.tv_nsec) +
                    ' ' + folder.read(name) + '\n';
        }
        return text;
    }
};

TEST_P(RootToolsPolicy, DoesWhatEachRowAllows) {
    const auto authorization = obtained(GetParam());
    for (const PolicyRow& row : policyRows()) {
        // It would work on this machine's own applications.
        if (row.action == Action::refreshDesktopDatabase) continue;
        prepare(row);
        EXPECT_TRUE(succeeds(*authorization, row.tool, here(row))) << row.name;
        EXPECT_EQ(folder.holds("target"), row.action != Action::remove) << row.name;
    }
}

TEST_P(RootToolsPolicy, RefusesWhatIsNearlyARow) {
    const auto authorization = obtained(GetParam());
    for (const PolicyRow& row : policyRows()) {
        prepare(row);
        const std::string before = disk();
        for (std::size_t index = 0; index < row.arguments.size(); ++index) {
            const ToolArguments right = here(row);
            for (const std::string& text :
                 {std::string(), right[index] + "/", "-" + right[index], right[index] + '\n'}) {
                ToolArguments wrong = right;
                wrong[index] = text;
                // A name may end in a line break.
                if (text.ends_with('\n') && text.starts_with('/')) wrong.emplace_back("/third");
                EXPECT_FALSE(succeeds(*authorization, row.tool, wrong)) << row.name << text;
            }
            ToolArguments fewer = right;
            fewer.pop_back();
            EXPECT_FALSE(succeeds(*authorization, row.tool, fewer)) << row.name;
            EXPECT_FALSE(succeeds(*authorization, row.tool + " ", right)) << row.name;
        }
        EXPECT_EQ(disk(), before) << row.name;
    }
}

TEST_P(RootToolsPolicy, RefusesFoldersOfTheSystem) {
    const auto authorization = obtained(GetParam());
    for (const std::string path : {"/etc/missing", "/usr/bin/missing", "/boot/missing"}) {
        EXPECT_FALSE(succeeds(*authorization, "/usr/bin/touch", {path}));
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST_P(RootToolsPolicy, RefusesWhatTheRunHasNotPlanned) {
    const auto authorization = obtained(GetParam());
    for (const PolicyRow& row : policyRows()) {
        if (row.action == Action::refreshDesktopDatabase) continue;
        folder.add("source", "new");
        folder.add("unplanned/file", "kept");
        ToolArguments arguments = here(row);
        arguments.back() = folder / "unplanned/file";
        EXPECT_FALSE(succeeds(*authorization, row.tool, arguments)) << row.name;
        EXPECT_EQ(folder.read("unplanned/file"), "kept") << row.name;
        arguments.back() = folder / "unplanned/new";
        EXPECT_FALSE(succeeds(*authorization, row.tool, arguments)) << row.name;
        EXPECT_FALSE(folder.holds("unplanned/new")) << row.name;
    }
}

TEST_P(RootToolsPolicy, ChangesNothingBeforeThereIsAPlan) {
    const auto authorization = obtained(GetParam());
    authorization->limitTo(WriteGrant());
    EXPECT_FALSE(succeeds(*authorization, "/usr/bin/touch", {folder / "file"}));
    EXPECT_FALSE(folder.holds("file"));
}

INSTANTIATE_TEST_SUITE_P(Ways, RootToolsPolicy,
                         testing::Values(RootWay::inThisProcess, RootWay::throughTheHelper),
                         [](const auto& way) {
                             return way.param == RootWay::inThisProcess ? "InThisProcess"
                                                                        : "ThroughTheHelper";
                         });

// In this process.

TEST_F(RootToolsTest, NeedsNoHelperAndStartsNoProcess) {
    folder.add("file", "");
    const auto authorization = obtained(RootWay::inThisProcess);
    EXPECT_TRUE(succeeds(*authorization, "/bin/chmod", {"-R", "0775", folder / "file"}));
    siginfo_t information{};
    EXPECT_EQ(::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(RootToolsTest, TellsTheSinkOfEveryByteOfACopy) {
    class Sink : public ProgressSink {
      public:
        std::uint64_t bytes = 0;
        void bytesCopied(std::uint64_t more) override { bytes += more; }
    } sink;
    folder.add("source/file", std::string(5000000, 'x'));
    const auto authorization = obtained(RootWay::inThisProcess);
    authorization->setProgressSink(&sink);
    EXPECT_TRUE(succeeds(*authorization, "/bin/cp", {"-R", folder / "source", folder / "copy"}));
    EXPECT_EQ(sink.bytes, 5000000U);
}

TEST_F(RootToolsTest, ActsForRootWhateverAnEarlierSudoSays) {
    ::setenv("SUDO_UID", "65534", 1);
    folder.add("file", "");
    const auto authorization = obtained(RootWay::inThisProcess);
    EXPECT_FALSE(
        succeeds(*authorization, "/usr/sbin/chown", {"-R", "nobody:admin", folder / "file"}));
    EXPECT_TRUE(succeeds(*authorization, "/usr/sbin/chown", {"-R", "root:admin", folder / "file"}));
    ::unsetenv("SUDO_UID");
}

TEST_F(RootToolsTest, IsDeniedToAProcessThatIsRootOnlyForAWhile) {
    const auto authorization = obtained(RootWay::inThisProcess);
    ASSERT_EQ(::setresuid(65534, 0, 0), 0);
    const std::int32_t status = authorization->execute("/usr/bin/touch", {folder / "file"}).status;
    ASSERT_EQ(::setresuid(0, 0, 0), 0);
    EXPECT_EQ(status, authorization_status::denied);
    EXPECT_FALSE(folder.holds("file"));
}

constexpr const char* registrationTool =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";

/// While this object lives, this process has a data base of desktop entries of its own.
class OwnApplications {
  public:
    explicit OwnApplications(const std::string& folder)
        // A machine without a desktop lacks the folder.
        : isFolderMade_(::mkdir(place, 0755) == 0),
          isMounted_(::unshare(CLONE_NEWNS) == 0 &&
                     ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                     ::mount(folder.c_str(), place, nullptr, MS_BIND, nullptr) == 0) {}
    ~OwnApplications() {
        if (isMounted_) ::umount2(place, MNT_DETACH);
        if (isFolderMade_) ::rmdir(place);
    }
    OwnApplications(const OwnApplications&) = delete;
    OwnApplications& operator=(const OwnApplications&) = delete;

    [[nodiscard]] bool areSeen() const { return isMounted_; }

  private:
    static constexpr const char* place = "/usr/share/applications";
    bool isFolderMade_;
    bool isMounted_;
};

TEST_F(RootToolsTest, WaitsInTheBackgroundForTheRefreshOfTheDesktopDatabase) {
    if (::access("/usr/bin/update-desktop-database", X_OK) != 0) {
        GTEST_SKIP() << "NOT TESTED: this machine has no desktop-file-utils";
    }
    folder.add(
        "applications/sample.desktop",
        "[Desktop Entry]\nType=Application\nName=Sample\nExec=true\nMimeType=text/x-sample;\n");
    const OwnApplications applications(folder / "applications");
    if (!applications.areSeen()) {
        GTEST_SKIP() << "NOT TESTED: no mount namespace to be had here";
    }
    const auto authorization = obtained(RootWay::inThisProcess);
    EXPECT_TRUE(succeeds(*authorization, registrationTool, {"-apps"}));
    // It runs, or has ended and is waited for by somebody else than this test.
    siginfo_t information{};
    while (::waitid(P_ALL, 0, &information, WEXITED | WNOWAIT) == 0) ::sched_yield();
    EXPECT_EQ(errno, ECHILD);
    EXPECT_TRUE(folder.holds("applications/mimeinfo.cache"));
}

/// While this object lives, something else is mounted at that place.
class Covered {
  public:
    Covered(const char* what, const char* kind, unsigned long flags, const char* place)
        : place_(::mount(what, place, kind, flags, nullptr) == 0 ? place : nullptr) {}
    ~Covered() {
        if (place_ != nullptr) ::umount2(place_, MNT_DETACH);
    }
    Covered(const Covered&) = delete;
    Covered& operator=(const Covered&) = delete;

    [[nodiscard]] bool isMounted() const { return place_ != nullptr; }

  private:
    const char* place_;
};

TEST_F(RootToolsTest, RefreshesTheDesktopDatabaseInASessionOfItsOwnWithoutTheEnvironment) {
    if (::access("/usr/bin/update-desktop-database", X_OK) != 0) {
        GTEST_SKIP() << "NOT TESTED: this machine has no desktop-file-utils";
    }
    folder.add("applications/empty", "");
    const std::string tool =
        folder.add("tool",
                   "#!/bin/sh\n/usr/bin/env > \"$1/environment\"\n"
                   "/usr/bin/cut -d ' ' -f 6 /proc/self/stat > \"$1/session\"\n");
    ASSERT_EQ(::chmod(tool.c_str(), 0755), 0);
    const OwnApplications applications(folder / "applications");
    if (!applications.areSeen()) GTEST_SKIP() << "NOT TESTED: no mount namespace to be had here";
    const Covered real(tool.c_str(), nullptr, MS_BIND, "/usr/bin/update-desktop-database");
    ASSERT_TRUE(real.isMounted());
    ASSERT_EQ(::setenv("OF_THE_CALLER", "1", 1), 0);
    const auto authorization = obtained(RootWay::inThisProcess);
    EXPECT_TRUE(succeeds(*authorization, registrationTool, {"-apps"}));
    ::unsetenv("OF_THE_CALLER");
    siginfo_t information{};
    while (::waitid(P_ALL, 0, &information, WEXITED | WNOWAIT) == 0) ::sched_yield();
    const std::string environment = folder.read("applications/environment");
    EXPECT_EQ(environment.find("OF_THE_CALLER"), std::string::npos) << environment;
    const std::string session = folder.read("applications/session");
    EXPECT_FALSE(session.empty());
    EXPECT_NE(session, std::to_string(::getsid(0)) + "\n");
}

TEST_F(RootToolsTest, MissesNoToolForTheDesktopDatabaseWhereThereIsNone) {
    const OwnApplications applications(folder.path());
    if (!applications.areSeen()) GTEST_SKIP() << "NOT TESTED: no mount namespace to be had here";
    const Covered tools("none", "tmpfs", 0, "/usr/bin");
    ASSERT_TRUE(tools.isMounted());
    const auto authorization = obtained(RootWay::inThisProcess);
    EXPECT_TRUE(succeeds(*authorization, registrationTool, {"-apps"}));
}

TEST_F(RootToolsTest, LeavesTheDesktopDatabaseAloneForATargetVolume) {
    HelperPlace place;
    place.volume = folder.path();
    RootTools tools(place, grant(), nullptr);
    const PrivilegedLaunch launch = tools.execute(registrationTool, {"-apps"}, nullptr);
    ASSERT_TRUE(launch.tool);
    EXPECT_TRUE(launch.tool->hasSucceeded());
    siginfo_t information{};
    EXPECT_EQ(::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT), -1);
    EXPECT_EQ(errno, ECHILD);
}

namespace signal_held {
const char* copy = nullptr;
volatile sig_atomic_t handled = 0;
volatile sig_atomic_t copyWasWhole = 0;
void handle(int /*number*/) {
    handled = 1;
    copyWasWhole = ::access(copy, F_OK) == 0 ? 1 : 0;
}
}  // namespace signal_held

TEST_F(RootToolsTest, ASignalThatArrivesDuringACopyTakesEffectAfterIt) {
    class Raiser : public ProgressSink {
      public:
        void bytesCopied(std::uint64_t /*bytes*/) override { ::raise(SIGTERM); }
    } raiser;
    const std::string copy = folder / "copy";
    signal_held::copy = copy.c_str();
    ::signal(SIGTERM, signal_held::handle);
    folder.add("source", "contents");
    const auto authorization = obtained(RootWay::inThisProcess);
    authorization->setProgressSink(&raiser);
    EXPECT_TRUE(succeeds(*authorization, "/bin/cp", {"-R", folder / "source", copy}));
    ::signal(SIGTERM, SIG_DFL);
    EXPECT_EQ(signal_held::handled, 1);
    EXPECT_EQ(signal_held::copyWasWhole, 1);
}

}  // namespace
}  // namespace installer::test

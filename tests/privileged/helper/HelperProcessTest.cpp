#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/system/AdminGroup.h"
#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

using HelperProcessTest = PrivilegedHelperProgram;

using testing::HasSubstr;
using testing::Not;

constexpr const char* lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";

/// The descriptors that the helper was given: it has a pipe of its own to a process of its own.
std::set<std::string> inheritedDescriptorsOf(const HelperProcess& helper) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(procFile(helper, "fd"))) {
        const std::string name = entry.path().filename();
        const std::string target = std::filesystem::read_symlink(entry.path());
        if (name.size() == 1 && name > "2" && target.starts_with("pipe:")) continue;
        names.insert(name);
    }
    return names;
}

// Its life.

TEST_F(HelperProcessTest, EndsWhenItsPeerClosesTheConnection) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
    EXPECT_EQ(helper.standardError(), "");
}

TEST_F(HelperProcessTest, EndsWhenItsPeerIsKilled) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    const pid_t peer = ::fork();
    if (peer == 0) {
        HelperProcess helper;
        const pid_t process = helper.saysHello() ? helper.process() : -1;
        static_cast<void>(!::write(pipe[1], &process, sizeof process));
        ::pause();
    }
    pid_t helper = -1;
    ASSERT_EQ(::read(pipe[0], &helper, sizeof helper), static_cast<ssize_t>(sizeof helper));
    ASSERT_GT(helper, 0);
    const FileDescriptor end(static_cast<int>(::syscall(SYS_pidfd_open, helper, 0)));
    ASSERT_TRUE(end);
    ::kill(peer, SIGKILL);
    pollfd polled{end.get(), POLLIN, 0};
    EXPECT_EQ(::poll(&polled, 1, -1), 1);
    ::waitpid(peer, nullptr, 0);
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(HelperProcessTest, RefusesToRunAsAnOrdinaryUser) {
    HelperProcess helper(afterDoing([] {
        if (::setresgid(nobody, nobody, nobody) != 0 || ::setresuid(nobody, nobody, nobody) != 0) {
            ::_exit(98);
        }
    }));
    EXPECT_FALSE(helper.saysHello());
    EXPECT_EQ(helper.exitStatus(), 1);
    EXPECT_THAT(helper.standardError(), HasSubstr("must be started by root"));
}

TEST_F(HelperProcessTest, RefusesToRunForAnOrdinaryUserWithRootsEffectiveRights) {
    HelperProcess helper(afterDoing([] {
        if (::setresuid(nobody, 0, 0) != 0) ::_exit(98);
    }));
    EXPECT_FALSE(helper.saysHello());
    EXPECT_EQ(helper.exitStatus(), 1);
}

// What it was started with.

TEST_F(HelperProcessTest, KeepsNothingOfItsEnvironment) {
    HelperProcess helper(withEnvironment({"SECRET=canary", "PATH=/tmp", "PKEXEC_UID=0"}));
    ASSERT_TRUE(helper.saysHello());
    const std::string environment = contentsOf(procFile(helper, "environ"));
    EXPECT_EQ(environment.find_first_not_of('\0'), std::string::npos);
}

TEST_F(HelperProcessTest, KeepsNoDescriptorBeyondTheStandardThree) {
    HelperProcess helper(afterDoing([] {
        const int opened = ::open("/etc/passwd", O_RDONLY);
        ::dup2(opened, 3);
        ::dup2(opened, 57);
        ::dup2(opened, 900);
    }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(inheritedDescriptorsOf(helper), (std::set<std::string>{"0", "1", "2"}));
}

TEST_F(HelperProcessTest, OpensAMissingStandardErrorOnNothing) {
    HelperProcess helper(afterDoing([] { ::close(STDERR_FILENO); }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(std::filesystem::read_symlink(procFile(helper, "fd/2")), "/dev/null");
    EXPECT_EQ(helper.run("/bin/sh", {}), 126U) << "its report goes nowhere, and harms nothing";
}

TEST_F(HelperProcessTest, EndsAtOnceWithoutStandardInput) {
    HelperProcess helper(afterDoing([] { ::close(STDIN_FILENO); }));
    EXPECT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.exitStatus(), 0);
}

TEST_F(HelperProcessTest, EndsAtOnceWithoutAnyStandardDescriptor) {
    HelperProcess helper(afterDoing([] {
        for (int descriptor = 0; descriptor < 3; ++descriptor) ::close(descriptor);
    }));
    EXPECT_FALSE(helper.saysHello());
    EXPECT_EQ(helper.exitStatus(), 0);
}

TEST_F(HelperProcessTest, HasItsOwnMaskFolderAndSignals) {
    HelperProcess helper(afterDoing([] {
        ::umask(0);
        if (::chdir("/tmp") != 0) ::_exit(98);
        sigset_t all;
        sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, nullptr);
    }));
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(std::filesystem::read_symlink(procFile(helper, "cwd")), "/");
    const std::string status = contentsOf(procFile(helper, "status"));
    EXPECT_THAT(status, HasSubstr("Umask:\t0022"));
    EXPECT_THAT(status, HasSubstr("SigBlk:\t0000000000000000"));
}

class HelperProcessTerminalKeys : public PrivilegedHelperProgram,
                                  public testing::WithParamInterface<int> {};

TEST_P(HelperProcessTerminalKeys, DoNotEndTheHelper) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    ASSERT_EQ(::kill(helper.process(), GetParam()), 0);
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "made"}), 0U);
    EXPECT_TRUE(folder.holds("made"));
}

INSTANTIATE_TEST_SUITE_P(Signals, HelperProcessTerminalKeys,
                         testing::Values(SIGINT, SIGQUIT, SIGHUP, SIGTSTP, SIGTTIN, SIGTTOU,
                                         SIGPIPE),
                         [](const auto& row) { return std::string(sigabbrev_np(row.param)); });

// Messages that are none.

struct Malformed {
    const char* name;
    std::string bytes;
};
void PrintTo(const Malformed& row, std::ostream* out) {
    *out << row.name;
}

class HelperProcessMalformedMessage : public PrivilegedHelperProgram,
                                      public testing::WithParamInterface<Malformed> {};

TEST_P(HelperProcessMalformedMessage, EndsTheHelperWithAReportAndWithoutAction) {
    folder.add("canary", "alive");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const std::string removal = encodedRequest({"/bin/rm", {"-fR", folder / "canary"}}).value();
    // A good request behind the bad bytes must not be reached.
    ASSERT_TRUE(helper.sendBytes(GetParam().bytes + removal));
    EXPECT_EQ(helper.exitStatus(), 1);
    EXPECT_THAT(helper.standardError(), HasSubstr("privileged-helper: what came is no "));
    EXPECT_TRUE(folder.holds("canary"));
}

std::string bytesOf(std::initializer_list<unsigned> values) {
    std::string bytes;
    for (const unsigned value : values) bytes += static_cast<char>(value);
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    Messages, HelperProcessMalformedMessage,
    testing::Values(Malformed{"unknownType", bytesOf({9, 0, 0, 0, 0, 0, 0, 0})},
                    Malformed{"typeZero", bytesOf({0, 0, 0, 0, 0, 0, 0, 0})},
                    Malformed{"hugeLength", bytesOf({2, 0, 0, 0, 255, 255, 255, 255})},
                    Malformed{"lengthOneOverTheLimit", bytesOf({2, 0, 0, 0, 1, 0, 1, 0})},
                    Malformed{"helloFromTheWrongSide", encodedHello()},
                    Malformed{"endedFromTheWrongSide", encodedEnded(0)},
                    Malformed{"emptyRequest", bytesOf({2, 0, 0, 0, 0, 0, 0, 0})},
                    Malformed{"requestWithoutTool", bytesOf({2, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0})},
                    Malformed{"requestOfSeventeenTexts",
                              bytesOf({2, 0, 0, 0, 4, 0, 0, 0, 17, 0, 0, 0})},
                    Malformed{"textBeyondItsMessage",
                              bytesOf({2, 0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 'x'})},
                    Malformed{"text", "rm -fR /\n"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(HelperProcessTest, DoesNothingOfARequestThatIsCutShort) {
    folder.add("canary", "alive");
    const std::string removal = encodedRequest({"/bin/rm", {"-fR", folder / "canary"}}).value();
    for (const std::size_t size : {std::size_t{1}, std::size_t{8}, removal.size() - 1}) {
        HelperProcess helper;
        ASSERT_TRUE(helper.saysHello());
        ASSERT_TRUE(helper.sendBytes(std::string_view(removal).substr(0, size)));
        helper.closeConnection();
        EXPECT_EQ(helper.exitStatus(), 1);
        EXPECT_TRUE(folder.holds("canary"));
    }
}

TEST_F(HelperProcessTest, AnswersEachOfManyRequestsThatComeAtOnce) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    std::string bytes;
    constexpr int count = 200;
    for (int index = 0; index < count; ++index) {
        bytes += encodedRequest({"/usr/bin/touch", {folder / std::to_string(index)}}).value();
    }
    ASSERT_TRUE(helper.sendBytes(bytes));
    for (int index = 0; index < count; ++index) {
        const std::optional<Message> message = helper.stream().receive();
        ASSERT_TRUE(message);
        EXPECT_EQ(exitStatus(*message), 0U);
        EXPECT_TRUE(folder.holds(std::to_string(index)));
    }
}

// Requests that the policy does not know.

TEST_F(HelperProcessTest, RefusesWithAReportAndGoesOn) {
    folder.add("canary", "alive");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "canary", folder / "other"}), 126U);
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "x/../canary"}), 126U);
    EXPECT_EQ(helper.run("/bin/sh", {"-c", "rm " + folder / "canary"}), 126U);
    EXPECT_TRUE(folder.holds("canary"));
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", folder / "canary"}), 0U);
    EXPECT_FALSE(folder.holds("canary"));
    helper.closeConnection();
    EXPECT_THAT(helper.standardError(), HasSubstr("refused: /bin/sh '-c'"));
}

TEST_F(HelperProcessTest, ReportsOneLineWhateverAnArgumentHolds) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/bin/rm", {std::string("a\nforged\x1b[2J\0z", 14)}), 126U);
    EXPECT_EQ(helper.run("/bin/rm", {std::string(60000, 'x')}), 126U);
    EXPECT_EQ(helper.run("/" + std::string(60000, 'x'), {}), 126U);
    helper.closeConnection();
    const std::string text = helper.standardError();
    EXPECT_EQ(std::ranges::count(text, '\n'), 3);
    EXPECT_THAT(text, HasSubstr("a\\nforged\\x1b[2J\\x00z"));
    EXPECT_LT(text.size(), 1000U);
}

TEST_F(HelperProcessTest, ReportsNoCharacterThatATerminalObeys) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/bin/rm", {"\xC2\x9B\xC2\x85\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6"}),
              126U);
    helper.closeConnection();
    EXPECT_THAT(helper.standardError(),
                HasSubstr("'\\xc2\\x9b\\xc2\\x85\\xe2\\x80\\xa8\\xe2\\x80\\xae\\xe2\\x81\\xa6'"));
}

TEST_F(HelperProcessTest, ChangesNothingInAFolderOfTheSystemAndGoesOn) {
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const std::string planted = "/etc/" + std::filesystem::path(folder.path()).filename().string();
    folder.add("source", "");
    EXPECT_EQ(helper.run("/usr/bin/touch", {planted}), 126U);
    EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", planted}), 126U);
    EXPECT_EQ(helper.run("/bin/cp", {"-R", folder / "source", planted}), 126U);
    EXPECT_FALSE(std::filesystem::exists(planted));
    std::filesystem::remove(planted);
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "made"}), 0U);
}

TEST_F(HelperProcessTest, TakesTheFoldersOfTheSystemFromTheTargetVolume) {
    folder.add("etc/file", "");
    folder.add("Library/file", "");
    HelperProcess helper(
        {.environment = {}, .arguments = {"--volume", folder.path()}, .before = {}});
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "etc/made"}), 126U);
    EXPECT_FALSE(folder.holds("etc/made"));
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "Library/made"}), 0U);
}

// For whom it acts.

struct ForWhom {
    const char* name;
    std::vector<std::string> arguments;
    std::vector<std::string> environment;
    uid_t user;
};
void PrintTo(const ForWhom& row, std::ostream* out) {
    *out << row.name;
}

class HelperProcessInvokingUser : public PrivilegedHelperProgram,
                                  public testing::WithParamInterface<ForWhom> {};

TEST_P(HelperProcessInvokingUser, IsTheOnlyOneToWhomTheHelperGivesFiles) {
    folder.add("file", "");
    HelperProcess helper(
        {.environment = GetParam().environment, .arguments = GetParam().arguments, .before = {}});
    ASSERT_TRUE(helper.saysHello());
    const bool isRoot = GetParam().user == 0;
    const std::string file = folder / "file";
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", isRoot ? "nobody:admin" : "root:admin", file}),
              126U);
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", isRoot ? "root:admin" : "nobody:admin", file}),
              0U);
    struct stat status{};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, GetParam().user);
    EXPECT_EQ(status.st_gid, administratorsGroup());
}

INSTANTIATE_TEST_SUITE_P(
    Environments, HelperProcessInvokingUser,
    testing::Values(
        ForWhom{"rootItself", {}, {}, 0},
        ForWhom{"rootWithAnEarlierSudosVariable", {}, {"SUDO_UID=65534", "PKEXEC_UID=65534"}, 0},
        ForWhom{"pkexec", {"--started-by", "polkit"}, {"PKEXEC_UID=65534"}, nobody},
        ForWhom{"sudo", {"--started-by", "sudo"}, {"SUDO_UID=65534"}, nobody},
        ForWhom{"sudoThatKeptTheEnvironment",
                {"--started-by", "sudo"},
                {"PKEXEC_UID=0", "SUDO_UID=65534"},
                nobody},
        ForWhom{"pkexecWithinSudo",
                {"--started-by", "polkit"},
                {"SUDO_UID=0", "PKEXEC_UID=65534"},
                nobody}),
    [](const auto& row) { return std::string(row.param.name); });

class HelperProcessBrokenUserNumber : public PrivilegedHelperProgram,
                                      public testing::WithParamInterface<std::string> {};

HelperProcess::Start startedBy(const std::string& program, std::vector<std::string> environment) {
    return {.environment = std::move(environment),
            .arguments = {"--started-by", program},
            .before = {}};
}

TEST_P(HelperProcessBrokenUserNumber, EndsTheHelperBeforeItListens) {
    for (const auto& [program, variable] :
         {std::pair("polkit", "PKEXEC_UID="), std::pair("sudo", "SUDO_UID=")}) {
        HelperProcess helper(startedBy(program, {variable + GetParam()}));
        EXPECT_FALSE(helper.saysHello()) << variable;
        EXPECT_EQ(helper.exitStatus(), 1) << variable;
    }
}

TEST_F(HelperProcessTest, DoesNotListenWithoutTheVariableOfTheProgramThatStartedIt) {
    for (const auto& [program, other] :
         {std::pair("polkit", "SUDO_UID=65534"), std::pair("sudo", "PKEXEC_UID=65534")}) {
        HelperProcess helper(startedBy(program, {other}));
        EXPECT_FALSE(helper.saysHello()) << program;
        EXPECT_EQ(helper.exitStatus(), 1) << program;
    }
}

TEST_F(HelperProcessTest, DoesNotListenWithACommandLineThatItDoesNotKnow) {
    const std::vector<std::vector<std::string>> commandLines = {{""},
                                                                {"--started-by"},
                                                                {"--started-by", ""},
                                                                {"--started-by", "root"},
                                                                {"--help"},
                                                                {"--onto", "/Library"},
                                                                {"--volume"},
                                                                {"--into"},
                                                                {"--started-by", "sudo", "more"}};
    for (const auto& arguments : commandLines) {
        HelperProcess helper({.environment = {"SUDO_UID=65534", "PKEXEC_UID=65534"},
                              .arguments = arguments,
                              .before = {}});
        EXPECT_FALSE(helper.saysHello());
        EXPECT_EQ(helper.exitStatus(), 1);
        EXPECT_THAT(helper.standardError(), HasSubstr("command line"));
    }
}

INSTANTIATE_TEST_SUITE_P(Numbers, HelperProcessBrokenUserNumber,
                         testing::Values("", "-1", "-0", "+1", " 1", "1 ", "1\n", "0x1", "1e3",
                                         "1.0", "1,2", "\xd9\xa1", "nobody", "4294967295",
                                         "4294967296", "99999999999999999999"));

TEST_F(HelperProcessTest, DoesNotListenWhenTwoUsersStandInOneVariable) {
    for (const auto& [program, variable] :
         {std::pair("polkit", "PKEXEC_UID"), std::pair("sudo", "SUDO_UID")}) {
        const std::string name = variable;
        HelperProcess helper(startedBy(program, {name + "=65534", name + "=0"}));
        EXPECT_FALSE(helper.saysHello()) << variable;
        EXPECT_EQ(helper.exitStatus(), 1) << variable;
    }
}

// What it does.

TEST_F(HelperProcessTest, NeverCopiesIntoAnExistingDestination) {
    folder.add("source/file", "new");
    folder.add("destination/old", "old");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run("/bin/cp", {"-R", folder / "source", folder / "destination"}), 1U);
    EXPECT_FALSE(folder.holds("destination/source"));
    EXPECT_FALSE(folder.holds("destination/file"));
    EXPECT_EQ(contentsOf(folder / "destination/old"), "old");
}

TEST_F(HelperProcessTest, TellsOfEveryByteThatItCopies) {
    const std::size_t size = (std::size_t{3} << 20U) + 17;
    folder.add("source/big", std::string(size, 'x'));
    folder.add("source/small", "12345");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const ToolRequest request{"/bin/cp", {"-R", folder / "source", folder / "copy"}};
    ASSERT_TRUE(helper.sendBytes(encodedRequest(request).value()));
    std::uint64_t told = 0;
    std::optional<Message> message = helper.stream().receive();
    while (message && progressBytes(*message)) {
        told += *progressBytes(*message);
        message = helper.stream().receive();
    }
    ASSERT_TRUE(message);
    EXPECT_EQ(exitStatus(*message), 0U);
    EXPECT_EQ(told, size + 5);
}

TEST_F(HelperProcessTest, FinishesWhatItIsDoingWhenItsPeerIsGone) {
    folder.add("source/file", "contents");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const ToolRequest request{"/bin/cp", {"-R", folder / "source", folder / "copy"}};
    ASSERT_TRUE(helper.sendBytes(encodedRequest(request).value()));
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
    EXPECT_EQ(contentsOf(folder / "copy/file"), "contents");
}

TEST_F(HelperProcessTest, FollowsNoLinkThatAnOrdinaryUserCouldHavePutIntoAPath) {
    folder.add("target/canary", "alive");
    folder.add("users/own", "");
    ASSERT_EQ(::chown((folder / "users").c_str(), nobody, nobody), 0);
    std::filesystem::create_symlink(folder / "target", folder / "users/link");
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const std::string canary = folder / "users/link/canary";
    EXPECT_EQ(helper.run("/bin/rm", {"-fR", canary}), 1U);
    EXPECT_EQ(helper.run("/bin/chmod", {"-R", "0775", canary}), 1U);
    EXPECT_EQ(helper.run("/usr/sbin/chown", {"-R", "root:admin", canary}), 1U);
    EXPECT_EQ(helper.run("/usr/bin/touch", {folder / "users/link/new"}), 1U);
    EXPECT_EQ(helper.run("/bin/mkdir", {"-m775", "-p", folder / "users/link/new/er"}), 1U);
    EXPECT_EQ(helper.run("/bin/cp", {"-R", canary, folder / "copy"}), 1U);
    EXPECT_EQ(helper.run("/bin/cp", {"-R", folder / "users/own", folder / "users/link/copy"}), 1U);
    EXPECT_EQ(helper.run("/usr/bin/xattr", {"-dr", "com.apple.quarantine", canary}), 1U);
    const auto status = std::filesystem::directory_iterator(folder / "target");
    EXPECT_EQ(std::distance(begin(status), end(status)), 1);
    EXPECT_EQ(contentsOf(folder / "target/canary"), "alive");
}

TEST_F(HelperProcessTest, RefreshesTheDesktopDatabaseInTheBackground) {
    if (::access("/usr/bin/update-desktop-database", X_OK) != 0) {
        GTEST_SKIP() << "NOT TESTED: this machine has no desktop-file-utils";
    }
    ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    // A machine without a desktop lacks the folder; the mount below needs one.
    const bool made = ::mkdir("/usr/share/applications", 0755) == 0;
    folder.add(
        "applications/sample.desktop",
        "[Desktop Entry]\nType=Application\nName=Sample\nExec=true\nMimeType=text/x-sample;\n");
    const std::string applications = folder / "applications";
    HelperProcess helper(afterDoing([applications] {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(applications.c_str(), "/usr/share/applications", nullptr, MS_BIND, nullptr) !=
                0) {
            ::_exit(98);
        }
    }));
    if (!helper.saysHello()) GTEST_SKIP() << "NOT TESTED: no mount namespace to be had here";
    EXPECT_EQ(helper.run(lsregister, {"-apps"}), 0U);
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
    // The refresh outlives the helper. If it has not ended yet, it is a child of this process now.
    while (::waitpid(-1, nullptr, 0) > 0) {
    }
    EXPECT_TRUE(folder.holds("applications/mimeinfo.cache"));
    if (made) {
        EXPECT_EQ(::rmdir("/usr/share/applications"), 0);
    }
}

/// Whether the helper leaves a process behind when it ends after the request for a refresh.
bool leavesAProcess(std::vector<std::string> arguments) {
    HelperProcess helper({.environment = {}, .arguments = std::move(arguments), .before = {}});
    EXPECT_TRUE(helper.saysHello());
    EXPECT_EQ(helper.run(lsregister, {"-apps"}), 0U);
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
    return ::waitpid(-1, nullptr, 0) > 0;
}

TEST_F(HelperProcessTest, LeavesTheDesktopDatabaseAloneForATargetVolume) {
    if (::access("/usr/bin/update-desktop-database", X_OK) != 0) {
        GTEST_SKIP() << "NOT TESTED: this machine has no desktop-file-utils";
    }
    // Whoever the helper leaves behind becomes a child of this process.
    ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    EXPECT_FALSE(leavesAProcess({"--volume", folder.path()}));
}

}  // namespace
}  // namespace installer::test

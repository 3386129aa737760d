#include <chrono>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxWorkspace.h"
#include "linux/process/PollEventLoop.h"
#include "tests/linux/desktop/RunningProgram.h"
#include "tests/privileged/trees/Disk.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int strayDescriptor = 77;

/// Programs that are started here say things about themselves through a FIFO, whose readers wait
/// until somebody has said something.
class LinuxWorkspaceTest : public testing::Test {
  protected:
    LinuxWorkspaceTest() { disk_.addFifo("said"); }

    /// The commands of a program that says what they write.
    [[nodiscard]] std::string saying(const std::string& commands) const {
        return "#!/bin/sh\n{\n" + commands + "\n} > '" + disk_.at("said") + "'\n";
    }
    [[nodiscard]] std::string said() const { return disk_.read("said"); }

    void addOpener(const std::string& commands = "printf '%s\\n' $# \"$@\"") const {
        addScript(disk_, "bin/xdg-open", saying(commands));
    }
    void addApplication(const std::string& package, const std::string& program,
                        const std::string& commands) const {
        addScript(disk_, package + "/Contents/MacOS/" + program, saying(commands));
    }
    void nameExecutable(const std::string& package, const std::string& name) const {
        disk_.add(package + "/Contents/Info.plist",
                  "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" + name +
                      "</string></dict></plist>");
    }

    /// Turns the loop until this process has no child, ended or not.
    void awaitNoChildren() {
        siginfo_t information{};
        while (::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT) == 0) {
            ASSERT_TRUE(loop_.runOnce());
        }
    }

    ScratchFolder disk_;
    RecordingLog log_;
    PollEventLoop loop_;
    LinuxBundles bundles_{{}, log_};
    std::string path_ = "relative:" + disk_.at("missing") + "::" + disk_.at("bin");
    LinuxWorkspace workspace_{loop_, bundles_, log_, [this](const std::string& name) {
                                  return name == "PATH" ? std::optional(path_) : std::nullopt;
                              }};
};

TEST_F(LinuxWorkspaceTest, AnAddressGoesToTheDesktopsOpenerAsItIs) {
    addOpener();
    for (const std::string address :
         {"https://example.com/a?b=c&d='$HOME'#e", "http://example.com/", "mailto:a@example.com",
          "file:///a%20b", "HTTP://example.com/a b"}) {
        EXPECT_TRUE(workspace_.openAddress(address)) << address;
        EXPECT_EQ(said(), "1\n" + address + "\n");
    }
    EXPECT_THAT(log_.lines, IsEmpty());
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, ASchemeMayHoldDigitsAndSigns) {
    addOpener();
    ASSERT_TRUE(workspace_.openAddress("x-maker.app2://register"));
    EXPECT_EQ(said(), "1\nx-maker.app2://register\n");
    EXPECT_FALSE(workspace_.openAddress("2app://register"));
    EXPECT_FALSE(workspace_.openAddress("-app://register"));
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, WhatIsNoAddressIsRefusedWithALine) {
    addOpener("echo opened");
    const std::vector<std::string> refused = {
        "",     "--help",    "-h:x",      "/etc/passwd", "example.com",
        "://x", "1http://x", "ht tp://x", "http:",       " http://x"};
    for (const std::string& address : refused) {
        EXPECT_FALSE(workspace_.openAddress(address)) << address;
    }
    EXPECT_EQ(log_.lines.size(), refused.size());
    EXPECT_THAT(log_.lines, Contains("Could not open \"--help\": it is no address"));
    EXPECT_FALSE(workspace_.openAddress(std::string("http://a\0b", 10)));
    EXPECT_EQ(log_.lines.size(), refused.size() + 1);
}

TEST_F(LinuxWorkspaceTest, WithoutAnOpenerAnAddressIsRefusedWithALine) {
    disk_.add("bin/xdg-open", "not executable");
    EXPECT_FALSE(workspace_.openAddress("http://example.com/"));
    EXPECT_THAT(log_.lines,
                ElementsAre("Could not open http://example.com/: there is no xdg-open"));
}

TEST_F(LinuxWorkspaceTest, AnOpenerThatCannotBeStartedIsToldInALine) {
    addScript(disk_, "bin/xdg-open", "#!/nonexistent/interpreter\n");
    EXPECT_FALSE(workspace_.openAddress("http://example.com/"));
    EXPECT_THAT(log_.lines, ElementsAre(HasSubstr("No such file")));
}

TEST_F(LinuxWorkspaceTest, AnOpenerThatEndsWithAnErrorIsToldOnce) {
    addScript(disk_, "bin/xdg-open", "#!/bin/sh\nexit 3\n");
    std::vector<std::string> failed;
    const Subscription failures =
        workspace_.onOpeningFailed([&](const std::string& address) { failed.push_back(address); });
    ASSERT_TRUE(workspace_.openAddress("https://example.com/a"));
    EXPECT_THAT(failed, IsEmpty()) << "nobody waits for its end";
    awaitNoChildren();
    EXPECT_THAT(failed, ElementsAre("https://example.com/a"));
    EXPECT_THAT(
        log_.lines,
        ElementsAre("Could not open https://example.com/a: xdg-open has ended with status 3"));
}

TEST_F(LinuxWorkspaceTest, AnOpenerThatIsKilledHasFailed) {
    addScript(disk_, "bin/xdg-open", "#!/bin/sh\nkill -KILL $$\n");
    std::vector<std::string> failed;
    const Subscription failures =
        workspace_.onOpeningFailed([&](const std::string& address) { failed.push_back(address); });
    ASSERT_TRUE(workspace_.openAddress("https://example.com/a"));
    awaitNoChildren();
    EXPECT_THAT(failed, ElementsAre("https://example.com/a"));
}

TEST_F(LinuxWorkspaceTest, AnOpenerThatEndsWellHasNotFailed) {
    addScript(disk_, "bin/xdg-open", "#!/bin/sh\n");
    bool failed = false;
    const Subscription failures =
        workspace_.onOpeningFailed([&](const std::string& /*address*/) { failed = true; });
    ASSERT_TRUE(workspace_.openAddress("https://example.com/a"));
    awaitNoChildren();
    EXPECT_FALSE(failed);
}

TEST_F(LinuxWorkspaceTest, AnOpenerThatRanOnForAWhileHasNotFailedWhateverItsEnd) {
    addScript(disk_, "bin/xdg-open", "#!/bin/sh\nexit 1\n");
    const Environment environment = [this](const std::string& /*name*/) {
        return std::optional(path_);
    };
    LinuxWorkspace workspace(loop_, bundles_, log_, environment, std::chrono::seconds(0));
    bool failed = false;
    const Subscription failures =
        workspace.onOpeningFailed([&](const std::string& /*address*/) { failed = true; });
    ASSERT_TRUE(workspace.openAddress("https://example.com/a"));
    awaitNoChildren();
    EXPECT_FALSE(failed);
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(LinuxWorkspaceTest, WhoeverIsToldOfAFailedOpenerMayEndTheWorkspace) {
    addScript(disk_, "bin/xdg-open", "#!/bin/sh\nexit 3\n");
    const Environment environment = [this](const std::string& /*name*/) {
        return std::optional(path_);
    };
    auto workspace = std::make_unique<LinuxWorkspace>(loop_, bundles_, log_, environment);
    const Subscription failures =
        workspace->onOpeningFailed([&](const std::string& /*address*/) { workspace.reset(); });
    ASSERT_TRUE(workspace->openAddress("https://example.com/a"));
    while (workspace) ASSERT_TRUE(loop_.runOnce());
}

TEST_F(LinuxWorkspaceTest, AFileIsOpenedByItsPath) {
    addOpener();
    const std::string path = disk_.add("100% of it/-日 file.txt", "");
    EXPECT_TRUE(workspace_.openFile(path));
    EXPECT_EQ(said(), "1\n" + path + "\n");
    EXPECT_FALSE(workspace_.openFile(disk_.at("missing")));
    EXPECT_FALSE(workspace_.openFile("--help"));
    EXPECT_FALSE(workspace_.openFile(""));
    EXPECT_EQ(log_.lines.size(), 3U);
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, TheOpenerHasASessionOfItsOwnAndNothingOfThisProcess) {
    ASSERT_EQ(::dup2(STDERR_FILENO, strayDescriptor), strayDescriptor);
    addOpener(
        "test \"$(cut -d ' ' -f 6 /proc/$$/stat)\" = $$ && echo own session\n"
        "exec 5<&0; readlink /proc/$$/fd/5 /proc/$$/fd/2\n"
        "test -e /proc/$$/fd/" +
        std::to_string(strayDescriptor) + " || echo closed");
    EXPECT_TRUE(workspace_.openAddress("http://example.com/"));
    EXPECT_EQ(said(), "own session\n/dev/null\n/dev/null\nclosed\n");
    ::close(strayDescriptor);
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, TheOpenerOutlivesThisProcess) {
    addOpener();
    EXPECT_EQ(
        inChild([&] { return workspace_.openAddress("http://example.com/") ? "" : "not started"; }),
        "");
    // It could not go on before somebody reads what it says.
    EXPECT_EQ(said(), "1\nhttp://example.com/\n");
}

TEST_F(LinuxWorkspaceTest, AnApplicationIsStartedByTheProgramThatItsPackageNames) {
    addApplication("Sample.app", "Sample", "echo wrong");
    addApplication("Sample.app", "run me", "echo run; printf '%s\\n' $# \"$@\"");
    nameExecutable("Sample.app", "run me");
    const auto launched = workspace_.launchHidden(disk_.at("Sample.app"), {"-no-ui", "a b"});
    EXPECT_TRUE(launched);
    EXPECT_EQ(said(), "run\n2\n-no-ui\na b\n");
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, WithoutANameTheProgramIsCalledLikeThePackage) {
    addApplication("Größe 2.0.app", "Größe 2.0", "echo run");
    EXPECT_TRUE(workspace_.launchHidden(disk_.at("Größe 2.0.app"), {}));
    EXPECT_EQ(said(), "run\n");
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, AnExecutablesNameCannotLeadOutOfThePackage) {
    addApplication("Sample.app", "Sample", "echo own");
    addScript(disk_, "other", saying("echo other"));
    nameExecutable("Sample.app", "../../../other");
    EXPECT_TRUE(workspace_.launchHidden(disk_.at("Sample.app"), {}));
    EXPECT_EQ(said(), "own\n");
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, AnExecutablesNameThatIsNoPlainFileNameCountsAsMissing) {
    addApplication("Sample.app", "Sample", "echo own");
    addScript(disk_, "Sample.app/Contents/MacOS/other", saying("echo other"));
    FakeBundles bundles;
    LinuxWorkspace workspace(loop_, bundles, log_);
    for (const std::string& name : {std::string("."), std::string(".."), std::string("/bin/sh"),
                                    std::string("../MacOS/other"), std::string("other\0", 6)}) {
        bundles.informationByPath[disk_.at("Sample.app")] = {{"CFBundleExecutable", name}};
        EXPECT_TRUE(workspace.launchHidden(disk_.at("Sample.app"), {})) << name;
        EXPECT_EQ(said(), "own\n") << name;
        awaitNoChildren();
    }
}

TEST_F(LinuxWorkspaceTest, AnApplicationThatCannotBeStartedIsNull) {
    disk_.addFolder("Empty.app");
    disk_.add("Text.app/Contents/MacOS/Text", "not executable");
    disk_.addFolder("folder");
    for (const char* below : {"Empty.app", "Text.app", "folder", "missing.app"}) {
        EXPECT_EQ(workspace_.launchHidden(disk_.at(below), {}), nullptr) << below;
    }
    EXPECT_EQ(workspace_.launchHidden("", {}), nullptr);
    EXPECT_EQ(log_.lines.size(), 5U);
}

TEST_F(LinuxWorkspaceTest, TerminateAsksTheApplicationToEnd) {
    addSleeper(disk_, "Sample.app/Contents/MacOS/Sample");
    const auto launched = workspace_.launchHidden(disk_.at("Sample.app"), forever);
    ASSERT_TRUE(launched);
    launched->terminate();
    awaitNoChildren();
    launched->terminate();
}

TEST_F(LinuxWorkspaceTest, AnApplicationCanTidyUpWhenItIsAskedToEnd) {
    // A shell that waits for a process is woken by a signal for certain; one that reads is not. And
    // only a process that is a program of its own by then can be ended by it for certain.
    addApplication("Sample.app", "Sample",
                   "trap 'kill $!; echo tidy; exit' TERM; "
                   "sh -c 'echo ready; exec sleep infinity' & wait");
    const auto launched = workspace_.launchHidden(disk_.at("Sample.app"), {});
    ASSERT_TRUE(launched);
    std::ifstream said(disk_.at("said"));
    std::string line;
    ASSERT_TRUE(std::getline(said, line));
    launched->terminate();
    ASSERT_TRUE(std::getline(said, line));
    EXPECT_EQ(line, "tidy");
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, ForgettingALaunchedApplicationLeavesItAlone) {
    addApplication("Sample.app", "Sample", "echo still here");
    workspace_.launchHidden(disk_.at("Sample.app"), {}).reset();
    EXPECT_EQ(said(), "still here\n");
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, ALaunchedApplicationIsAmongTheRunningOnes) {
    const std::string name = "Launched " + std::to_string(::getpid());
    addSleeper(disk_, name + ".app/Contents/MacOS/" + name);
    const auto launched = workspace_.launchHidden(disk_.at(name + ".app"), forever);
    ASSERT_TRUE(launched);
    EXPECT_THAT(workspace_.runningApplications(), Contains(name));
    launched->terminate();
    // The listing watched it too; whoever hears of its end first, it is gone afterwards.
    bool ended = false;
    const Subscription watch = workspace_.onApplicationTerminated(
        [&](const std::string& application) { ended = ended || application == name; });
    while (!ended) ASSERT_TRUE(loop_.runOnce());
    EXPECT_THAT(workspace_.runningApplications(), Not(Contains(name)));
    awaitNoChildren();
}

TEST_F(LinuxWorkspaceTest, ShowsTheIconOfAnApplication) {
    const std::string icon = disk_.add("Sample.app/Contents/Resources/AppIcon.png", "picture");
    EXPECT_EQ(workspace_.iconOfFile(disk_.at("Sample.app")), Image{icon});
    EXPECT_EQ(workspace_.iconOfFile(disk_.at("missing.app")), Image());
}

}  // namespace
}  // namespace installer::test

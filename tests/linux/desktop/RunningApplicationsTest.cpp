#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxWorkspace.h"
#include "linux/process/PollEventLoop.h"
#include "ports/DescriptorWatcher.h"
#include "tests/linux/desktop/RunningProgram.h"
#include "tests/privileged/trees/Disk.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {
namespace {

using testing::Contains;
using testing::IsSupersetOf;
using testing::Not;

// Names that no other program of this machine has, nor another run of these tests.
std::string unique(const std::string& name) {
    return name + " " + std::to_string(::getpid());
}

class CountingWatcher : public DescriptorWatcher {
  public:
    int watched = 0;
    Subscription watch(int /*descriptor*/, std::function<void()> /*whenReadable*/) override {
        ++watched;
        return Subscription([this] { --watched; });
    }
};

/// Tells only when a test wants it to.
class ManualWatcher : public DescriptorWatcher {
  public:
    Subscription watch(int descriptor, std::function<void()> whenReadable) override {
        handlers_[descriptor] = std::move(whenReadable);
        return Subscription([this, descriptor] { handlers_.erase(descriptor); });
    }

    void tellWhatIsReadable() {
        std::vector<int> descriptors;
        for (const auto& [descriptor, handler] : handlers_) descriptors.push_back(descriptor);
        for (const int descriptor : descriptors) {
            const auto found = handlers_.find(descriptor);
            pollfd polled{descriptor, POLLIN, 0};
            if (found == handlers_.end() || ::poll(&polled, 1, 0) <= 0) continue;
            const auto handler = found->second;
            handler();
        }
    }

  private:
    std::map<int, std::function<void()>> handlers_;
};

std::set<int> inheritableDescriptors() {
    std::set<int> found;
    for (int descriptor = 0; descriptor < 4096; ++descriptor) {
        const int flags = ::fcntl(descriptor, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0) found.insert(descriptor);
    }
    return found;
}

class RunningApplicationsTest : public testing::Test {
  protected:
    std::vector<std::string> running() { return workspace_->runningApplications(); }

    RunningProgram start(const std::string& name) {
        return RunningProgram(addSleeper(disk_, name));
    }

    /// Turns the loop until an application of that name has ended.
    void awaitEndOf(const std::string& name) {
        const auto count = [&] { return std::count(ended_.begin(), ended_.end(), name); };
        const auto before = count();
        while (count() == before) ASSERT_TRUE(loop_.runOnce());
    }

    void awaitThat(const std::function<bool()>& condition) {
        while (!condition()) ASSERT_TRUE(loop_.runOnce());
    }

    Subscription recordEnds() {
        return workspace_->onApplicationTerminated(
            [this](const std::string& name) { ended_.push_back(name); });
    }

    const std::string photoshop = unique("Photoshop CC 2019");
    const std::string elements = unique("Photoshop Elements 2018");

    ScratchFolder disk_;
    RecordingLog log_;
    PollEventLoop loop_;
    LinuxBundles bundles_{{}, log_};
    std::unique_ptr<LinuxWorkspace> workspace_ =
        std::make_unique<LinuxWorkspace>(loop_, bundles_, log_);
    std::vector<std::string> ended_;
};

TEST_F(RunningApplicationsTest, AProgramInAPackageHasThePackagesIcon) {
    const std::string icon = disk_.add(photoshop + ".app/Contents/Resources/AppIcon.png", "");
    const std::string program = photoshop + ".app/Contents/MacOS/run";
    RunningProgram own(addSleeper(disk_, program));
    EXPECT_EQ(workspace_->faceOfRunningApplication(photoshop).icon, Image()) << "not listed yet";
    ASSERT_THAT(running(), Contains(photoshop));
    EXPECT_EQ(workspace_->faceOfRunningApplication(photoshop).icon, Image{icon});
    EXPECT_EQ(workspace_->faceOfRunningApplication(photoshop).owner, "");
    own.end();
    EXPECT_EQ(workspace_->faceOfRunningApplication(photoshop).icon, Image());
}

TEST_F(RunningApplicationsTest, AnyOtherProgramHasTheIconThatTheMenusShow) {
    const std::string icon = disk_.add("camera.png", "");
    const std::string program = addSleeper(disk_, photoshop);
    disk_.add("applications/photo.desktop",
              "[Desktop Entry]\nExec=\"" + program + "\" %U\nIcon=" + icon + "\n");
    LinuxWorkspace workspace(loop_, bundles_, log_, [this](const std::string& name) {
        return name == "XDG_DATA_DIRS" ? std::optional(disk_.path()) : std::nullopt;
    });
    const RunningProgram running(program);
    ASSERT_THAT(workspace.runningApplications(), Contains(photoshop));
    EXPECT_EQ(workspace.faceOfRunningApplication(photoshop).icon, Image{icon});
}

TEST_F(RunningApplicationsTest, AProgramOfRootIsRootsForWhoeverHasBecomeRoot) {
    ASSERT_EQ(::setenv("SUDO_UID", "65534", 1), 0);
    RunningProgram program = start(photoshop);
    ASSERT_THAT(running(), Contains(photoshop));
    EXPECT_EQ(workspace_->faceOfRunningApplication(photoshop).owner, "root");
    ::unsetenv("SUDO_UID");
    EXPECT_EQ(workspace_->faceOfRunningApplication(photoshop).owner, "");
}

TEST_F(RunningApplicationsTest, AProgramIsListedByItsWholeNameWhileItRuns) {
    EXPECT_THAT(running(), Not(Contains(photoshop)));
    RunningProgram program = start(photoshop);
    EXPECT_THAT(running(), Contains(photoshop).Times(1));
    program.end();
    EXPECT_THAT(running(), Not(Contains(photoshop)));
}

TEST_F(RunningApplicationsTest, BracketsAndBadBytesInANameDoNotDisturb) {
    const std::string odd = unique("a) Z 1 (\xFF");
    const RunningProgram program = start(odd);
    EXPECT_THAT(running(), Contains(unique("a) Z 1 (\xEF\xBF\xBD")));
}

TEST_F(RunningApplicationsTest, AnApplicationPackageIsListedByItsBundleName) {
    const std::string bundleName = unique("Photoshop of the package");
    disk_.add("PS.app/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>" + bundleName +
                  "</string></dict></plist>");
    const RunningProgram program = start("PS.app/Contents/MacOS/run");
    EXPECT_THAT(running(), Contains(bundleName));
}

TEST_F(RunningApplicationsTest, APackageWithoutAPropertyListIsListedByItsFolder) {
    const RunningProgram program = start(photoshop + ".app/Contents/MacOS/run");
    EXPECT_THAT(running(), Contains(photoshop));
}

// "Photoshop backup.sh" is no Photoshop.
TEST_F(RunningApplicationsTest, AScriptIsListedOnlyInsideAPackage) {
    // They wait for somebody who writes, until they are ended.
    const std::string wait = "read line < '" + disk_.addFifo("nobody writes") + "'\n";
    addScript(disk_, photoshop, "#!/bin/sh\n" + wait);
    addScript(disk_, elements, wait);
    const std::string packaged = unique("Packaged");
    addScript(disk_, packaged + ".app/Contents/MacOS/run", "#!/bin/sh\n" + wait);
    const RunningProgram asProgram(disk_.at(photoshop), {});
    const RunningProgram byInterpreter("/bin/sh", {disk_.at(elements)}, "sh");
    const RunningProgram inPackage(disk_.at(packaged + ".app/Contents/MacOS/run"), {});
    const auto names = running();
    EXPECT_THAT(names, Not(Contains(photoshop)));
    EXPECT_THAT(names, Not(Contains(elements)));
    EXPECT_THAT(names, Contains(packaged));
}

TEST_F(RunningApplicationsTest, AWindowsProgramIsListedWithoutItsSuffix) {
    const std::string path = addSleeper(disk_, "loader");
    const RunningProgram program(path, forever, "C:\\Adobe\\" + photoshop + ".exe");
    EXPECT_THAT(running(), Contains(photoshop));
}

TEST_F(RunningApplicationsTest, OneThatHasEndedIsNotListedEvenIfNobodyWaitedForIt) {
    const RunningProgram program = start(photoshop);
    program.endWithoutWaiting();
    EXPECT_THAT(running(), Not(Contains(photoshop)));
}

TEST_F(RunningApplicationsTest, AnotherUsersProgramsAreNotListed) {
    const RunningProgram program = start(photoshop);
    EXPECT_THAT(running(), Contains(photoshop));
    EXPECT_EQ(asOrdinaryUser([&] {
                  const auto names = running();
                  return std::ranges::find(names, photoshop) == names.end() ? "" : "listed";
              }),
              "");
}

TEST_F(RunningApplicationsTest, TheEndsOfManyProgramsAreToldTogetherAfterOneScan) {
    // Each scan opens the package of a running application once.
    FakeBundles bundles;
    disk_.add("PS.app/Contents/Info.plist", "");
    const RunningProgram packaged = start("PS.app/Contents/MacOS/run");
    std::vector<RunningProgram> programs;
    const std::string path = addSleeper(disk_, photoshop);
    for (int count = 0; count < 20; ++count) programs.emplace_back(path);
    LinuxWorkspace workspace(loop_, bundles, log_);
    const Subscription watch = workspace.onApplicationTerminated([&](const std::string& name) {
        if (name == photoshop) ended_.push_back(name);
        static_cast<void>(workspace.runningApplications());
    });
    static_cast<void>(workspace.runningApplications());
    bundles.opened.clear();
    for (const RunningProgram& program : programs) program.endWithoutWaiting();
    awaitThat([&] { return ended_.size() == programs.size(); });
    const auto scans = std::ranges::count(bundles.opened, disk_.at("PS.app"));
    // Other programs of this machine may end at the same time.
    EXPECT_GE(scans, 1);
    EXPECT_LT(scans, 10);
}

TEST_F(RunningApplicationsTest, TheEndOfAWatchedApplicationIsToldByItsName) {
    RunningProgram first = start(photoshop);
    RunningProgram second = start(elements);
    const Subscription watch = recordEnds();
    static_cast<void>(running());
    second.end();
    awaitEndOf(elements);
    EXPECT_THAT(ended_, Not(Contains(photoshop)));
    first.end();
    awaitEndOf(photoshop);
    EXPECT_THAT(ended_, Contains(photoshop).Times(1));
}

TEST_F(RunningApplicationsTest, AnEndThatNobodyWaitedForIsToldToo) {
    const RunningProgram program = start(photoshop);
    const Subscription watch = recordEnds();
    static_cast<void>(running());
    program.kill();
    awaitEndOf(photoshop);
}

TEST_F(RunningApplicationsTest, NothingIsWatchedBeforeTheFirstListing) {
    const Subscription watch = recordEnds();
    EXPECT_FALSE(loop_.runOnce());
}

TEST_F(RunningApplicationsTest, WhatStartedAfterTheLastListingIsNotWatched) {
    const RunningProgram listed = start(photoshop);
    const Subscription watch = recordEnds();
    static_cast<void>(running());
    RunningProgram later = start(elements);
    later.end();
    listed.kill();
    awaitEndOf(photoshop);
    EXPECT_THAT(ended_, Not(Contains(elements)));
}

TEST_F(RunningApplicationsTest, EachEndIsToldOnceHoweverOftenTheyWereListed) {
    RunningProgram program = start(photoshop);
    const RunningProgram other = start(elements);
    const Subscription watch = recordEnds();
    for (int count = 0; count < 3; ++count) static_cast<void>(running());
    program.end();
    awaitEndOf(photoshop);
    other.kill();
    awaitEndOf(elements);
    EXPECT_THAT(ended_, Contains(photoshop).Times(1));
}

TEST_F(RunningApplicationsTest, TheHandlerMayListAnewAndDoesNotSeeWhatHasEnded) {
    const RunningProgram first = start(photoshop);
    const RunningProgram second = start(elements);
    std::vector<std::string> seen;
    const Subscription watch = workspace_->onApplicationTerminated([&](const std::string& name) {
        ended_.push_back(name);
        seen = running();
    });
    seen = running();
    EXPECT_THAT(seen, IsSupersetOf({photoshop, elements}));
    // Not the notice of the end is awaited: when another program of the machine ends first, the
    // list is made anew then, and what has ended meanwhile is missing from it before its notice.
    first.kill();
    awaitThat([&] { return std::ranges::find(seen, photoshop) == seen.end(); });
    EXPECT_THAT(seen, Contains(elements));
    second.kill();
    awaitThat([&] { return std::ranges::find(seen, elements) == seen.end(); });
}

TEST_F(RunningApplicationsTest, TwoThatEndAtOnceAreBothToldThoughTheHandlerListsAnew) {
    const RunningProgram first = start(photoshop);
    const RunningProgram second = start(elements);
    ManualWatcher watcher;
    LinuxWorkspace workspace(watcher, bundles_, log_);
    const Subscription watch = workspace.onApplicationTerminated([&](const std::string& name) {
        ended_.push_back(name);
        static_cast<void>(workspace.runningApplications());
    });
    static_cast<void>(workspace.runningApplications());
    first.endWithoutWaiting();
    second.endWithoutWaiting();
    const auto areBothTold = [&] {
        return std::ranges::count(ended_, photoshop) == 1 &&
               std::ranges::count(ended_, elements) == 1;
    };
    while (!areBothTold()) watcher.tellWhatIsReadable();
    EXPECT_THAT(ended_, Contains(photoshop).Times(1));
    EXPECT_THAT(ended_, Contains(elements).Times(1));
}

TEST_F(RunningApplicationsTest, TheProgramThatListsIsNotListedWhateverItIsCalled) {
    EXPECT_EQ(inChild([&] {
                  const std::string name = "Own" + std::to_string(::getpid());
                  if (!renameThisProcess("/" + name + ".exe")) return "not renamed";
                  const auto names = running();
                  return std::ranges::find(names, name) == names.end() ? "" : "listed";
              }),
              "");
}

TEST_F(RunningApplicationsTest, TheHandlerMayUnsubscribe) {
    const RunningProgram first = start(photoshop);
    const RunningProgram second = start(elements);
    Subscription watch;
    int calls = 0;
    watch = workspace_->onApplicationTerminated([&](const std::string& name) {
        if (name != photoshop) return;
        ++calls;
        watch.cancel();
    });
    const Subscription other = recordEnds();
    static_cast<void>(running());
    first.kill();
    awaitEndOf(photoshop);
    second.kill();
    awaitEndOf(elements);
    EXPECT_EQ(calls, 1);
}

TEST_F(RunningApplicationsTest, AHandlerMayUnsubscribeALaterOneAndSubscribeAnother) {
    const RunningProgram first = start(photoshop);
    const RunningProgram second = start(elements);
    Subscription later;
    Subscription added;
    int laterCalls = 0;
    std::vector<std::string> heardByAdded;
    const Subscription watch = workspace_->onApplicationTerminated([&](const std::string& name) {
        if (name != photoshop) return;
        later.cancel();
        added = workspace_->onApplicationTerminated(
            [&](const std::string& other) { heardByAdded.push_back(other); });
    });
    later = workspace_->onApplicationTerminated([&](const std::string& name) {
        if (name == photoshop || name == elements) ++laterCalls;
    });
    const Subscription record = recordEnds();
    static_cast<void>(running());
    first.kill();
    awaitEndOf(photoshop);
    second.kill();
    awaitEndOf(elements);
    EXPECT_EQ(laterCalls, 0);
    EXPECT_THAT(heardByAdded, Not(Contains(photoshop)));
    EXPECT_THAT(heardByAdded, Contains(elements));
}

TEST_F(RunningApplicationsTest, TheHandlerMayEndTheWorkspace) {
    const RunningProgram program = start(photoshop);
    const Subscription watch = workspace_->onApplicationTerminated([&](const std::string& name) {
        ended_.push_back(name);
        if (name == photoshop) workspace_.reset();
    });
    static_cast<void>(running());
    program.kill();
    awaitEndOf(photoshop);
    EXPECT_FALSE(workspace_);
    EXPECT_FALSE(loop_.runOnce());
}

TEST_F(RunningApplicationsTest, NobodyIsToldAfterTheHandleIsGone) {
    const RunningProgram first = start(photoshop);
    const RunningProgram second = start(elements);
    int calls = 0;
    {
        const Subscription watch =
            workspace_->onApplicationTerminated([&](const std::string&) { ++calls; });
    }
    const Subscription watch = recordEnds();
    static_cast<void>(running());
    first.kill();
    awaitEndOf(photoshop);
    EXPECT_EQ(calls, 0);
}

TEST_F(RunningApplicationsTest, FewDescriptorsAreNotUsedUpAndEveryProgramIsListed) {
    std::vector<RunningProgram> programs;
    programs.reserve(40);
    const std::string path = addSleeper(disk_, photoshop);
    for (int count = 0; count < 40; ++count) programs.emplace_back(path);
    EXPECT_EQ(inChild([&] {
                  const rlimit few{32, 32};
                  if (::setrlimit(RLIMIT_NOFILE, &few) != 0) return "cannot limit descriptors";
                  CountingWatcher watcher;
                  LinuxWorkspace workspace(watcher, bundles_, log_);
                  const auto names = workspace.runningApplications();
                  if (std::count(names.begin(), names.end(), photoshop) != 40) return "not listed";
                  if (watcher.watched == 0) return "nothing is watched";
                  for (int count = 0; count < 4; ++count) {
                      if (::open("/dev/null", O_RDONLY | O_CLOEXEC) < 0) return "none is left";
                  }
                  return "";
              }),
              "");
}

TEST_F(RunningApplicationsTest, NoDescriptorOfAWatchedOneIsInherited) {
    const auto before = inheritableDescriptors();
    static_cast<void>(running());
    EXPECT_EQ(inheritableDescriptors(), before);
}

}  // namespace
}  // namespace installer::test

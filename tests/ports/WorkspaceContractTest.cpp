// What every desktop promises.

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "linux/bundle/LinuxBundle.h"
#include "linux/desktop/LinuxWorkspace.h"
#include "linux/process/PollEventLoop.h"
#include "tests/linux/desktop/RunningProgram.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakeWindow.h"

namespace installer::test {

/// A desktop on which applications run and files can be opened.
class WorkspaceScene {
  public:
    virtual ~WorkspaceScene() = default;
    [[nodiscard]] virtual Workspace& workspace() = 0;
    [[nodiscard]] virtual EventLoop& loop() = 0;
    /// A name that nothing else on the machine has.
    [[nodiscard]] virtual std::string uniqueName(const std::string& name) const = 0;
    virtual void startApplication(const std::string& name) = 0;
    virtual void endApplication(const std::string& name) = 0;
    /// The path of a file, and of an application that can be launched and runs until it is ended.
    [[nodiscard]] virtual std::string makeFile() = 0;
    [[nodiscard]] virtual std::string makeApplication() = 0;
    [[nodiscard]] virtual std::string missingPath() const = 0;
    /// Nothing on the desktop opens addresses and files any more.
    virtual void removeOpener() = 0;
    [[nodiscard]] virtual std::size_t countLogged() const = 0;
};

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class DesktopOfThisMachine : public WorkspaceScene {
  public:
    DesktopOfThisMachine() { addScript(folder_, "bin/xdg-open", "#!/bin/sh\n"); }
    ~DesktopOfThisMachine() override {
        running_.clear();
        while (::waitpid(-1, nullptr, 0) > 0) {
        }
    }

    Workspace& workspace() override { return workspace_; }
    EventLoop& loop() override { return loop_; }
    std::string uniqueName(const std::string& name) const override {
        return name + " " + std::to_string(::getpid());
    }
    void startApplication(const std::string& name) override {
        running_.emplace(name, RunningProgram(addSleeper(folder_, name)));
    }
    void endApplication(const std::string& name) override { running_.erase(name); }
    std::string makeFile() override { return folder_.add("a file.txt", ""); }
    std::string makeApplication() override {
        addSleeper(folder_, "Sample.app/Contents/MacOS/Sample");
        return folder_.at("Sample.app");
    }
    std::string missingPath() const override { return folder_.at("missing.app"); }
    void removeOpener() override { std::filesystem::remove(folder_.at("bin/xdg-open")); }
    std::size_t countLogged() const override { return log_.lines.size(); }

  private:
    ScratchFolder folder_;
    RecordingLog log_;
    PollEventLoop loop_;
    LinuxBundles bundles_{{}, log_};
    LinuxWorkspace workspace_{loop_, bundles_, log_,
                              [this](const std::string& name) -> std::optional<std::string> {
                                  if (name != "PATH") return std::nullopt;
                                  return folder_.at("bin");
                              }};
    std::map<std::string, RunningProgram> running_;
};

class DesktopInMemory : public WorkspaceScene {
  public:
    Workspace& workspace() override { return fake_.workspace; }
    EventLoop& loop() override { return fake_.eventLoop; }
    std::string uniqueName(const std::string& name) const override { return name; }
    void startApplication(const std::string& name) override {
        fake_.workspace.running.push_back(name);
    }
    void endApplication(const std::string& name) override {
        std::erase(fake_.workspace.running, name);
        fake_.eventLoop.coming.emplace_back([this, name] { fake_.workspace.end(name); });
    }
    std::string makeFile() override {
        fake_.memory.addFile("/a file.txt");
        return "/a file.txt";
    }
    std::string makeApplication() override {
        fake_.memory.addFolder("/Sample.app");
        return "/Sample.app";
    }
    std::string missingPath() const override { return "/missing.app"; }
    void removeOpener() override { fake_.workspace.canOpen = false; }
    std::size_t countLogged() const override { return fake_.log.lines.size(); }

  private:
    FakeWindowPlatform fake_;
};

template <class Desktop>
std::unique_ptr<WorkspaceScene> makeWorkspaceScene() {
    return std::make_unique<Desktop>();
}

}  // namespace

class WorkspaceContract : public Contract<WorkspaceScene> {
  protected:
    [[nodiscard]] Subscription rememberEnds() {
        return scene_->workspace().onApplicationTerminated(
            [this](const std::string& name) { ended_.push_back(name); });
    }
    /// Turns the loop until the end of that application was told.
    void awaitEndOf(const std::string& name) {
        while (std::find(ended_.begin(), ended_.end(), name) == ended_.end()) {
            ASSERT_TRUE(scene_->loop().runOnce());
        }
    }

    std::vector<std::string> ended_;
    std::string one_ = scene_->uniqueName("One");
    std::string two_ = scene_->uniqueName("Two");
};

TEST_P(WorkspaceContract, ARunningApplicationIsListedUntilItEnds) {
    scene_->startApplication(one_);
    EXPECT_THAT(scene_->workspace().runningApplications(), Contains(one_));
    scene_->endApplication(one_);
    EXPECT_THAT(scene_->workspace().runningApplications(), Not(Contains(one_)));
}

TEST_P(WorkspaceContract, TheEndOfAListedApplicationIsToldOnce) {
    scene_->startApplication(one_);
    scene_->startApplication(two_);
    static_cast<void>(scene_->workspace().runningApplications());
    const Subscription ends = rememberEnds();
    scene_->endApplication(one_);
    awaitEndOf(one_);
    scene_->endApplication(two_);
    awaitEndOf(two_);
    EXPECT_EQ(std::count(ended_.begin(), ended_.end(), one_), 1);
}

TEST_P(WorkspaceContract, TheEndOfAnApplicationThatStartedAfterTheListIsNotTold) {
    scene_->startApplication(one_);
    static_cast<void>(scene_->workspace().runningApplications());
    scene_->startApplication(two_);
    const Subscription ends = rememberEnds();
    scene_->endApplication(two_);
    scene_->endApplication(one_);
    awaitEndOf(one_);
    EXPECT_THAT(ended_, Not(Contains(two_)));
}

TEST_P(WorkspaceContract, NobodyIsToldBeforeTheLoopTurns) {
    scene_->startApplication(one_);
    static_cast<void>(scene_->workspace().runningApplications());
    const Subscription ends = rememberEnds();
    scene_->endApplication(one_);
    EXPECT_THAT(ended_, IsEmpty());
    awaitEndOf(one_);
}

TEST_P(WorkspaceContract, AHandlerMayAskAnewAndTheEndedOneIsGone) {
    scene_->startApplication(one_);
    static_cast<void>(scene_->workspace().runningApplications());
    const Subscription asking =
        scene_->workspace().onApplicationTerminated([this](const std::string& name) {
            // Elsewhere on the machine several processes may have one name.
            if (name != one_) return;
            EXPECT_THAT(scene_->workspace().runningApplications(), Not(Contains(one_)));
        });
    const Subscription ends = rememberEnds();
    scene_->endApplication(one_);
    awaitEndOf(one_);
}

TEST_P(WorkspaceContract, AnEndThatHasHappenedIsToldEvenWhenTheListWasAskedForAnew) {
    scene_->startApplication(one_);
    static_cast<void>(scene_->workspace().runningApplications());
    const Subscription ends = rememberEnds();
    scene_->endApplication(one_);
    EXPECT_THAT(scene_->workspace().runningApplications(), Not(Contains(one_)));
    awaitEndOf(one_);
}

TEST_P(WorkspaceContract, WhoeverHasGivenUpTheHandleIsNotTold) {
    scene_->startApplication(one_);
    static_cast<void>(scene_->workspace().runningApplications());
    int calls = 0;
    scene_->workspace().onApplicationTerminated([&](const std::string&) { ++calls; }).cancel();
    const Subscription ends = rememberEnds();
    scene_->endApplication(one_);
    awaitEndOf(one_);
    EXPECT_EQ(calls, 0);
}

TEST_P(WorkspaceContract, AddressesAreOpenedAndOtherTextsRefusedWithALine) {
    EXPECT_TRUE(scene_->workspace().openAddress("https://example.com/a?b=c"));
    EXPECT_TRUE(scene_->workspace().openAddress("mailto:a@example.com"));
    EXPECT_EQ(scene_->countLogged(), 0U);
    std::size_t lines = 0;
    for (const char* text : {"", "example.com", "/etc/passwd", "--help", "http:", ":x"}) {
        EXPECT_FALSE(scene_->workspace().openAddress(text)) << text;
        EXPECT_EQ(scene_->countLogged(), ++lines) << text;
    }
}

TEST_P(WorkspaceContract, FilesThatAreThereAreOpened) {
    EXPECT_TRUE(scene_->workspace().openFile(scene_->makeFile()));
    EXPECT_EQ(scene_->countLogged(), 0U);
    EXPECT_FALSE(scene_->workspace().openFile(scene_->missingPath()));
    EXPECT_EQ(scene_->countLogged(), 1U);
}

TEST_P(WorkspaceContract, WithoutAnOpenerNothingIsOpened) {
    scene_->removeOpener();
    EXPECT_FALSE(scene_->workspace().openAddress("https://example.com/"));
    EXPECT_FALSE(scene_->workspace().openFile(scene_->makeFile()));
    EXPECT_EQ(scene_->countLogged(), 2U);
}

TEST_P(WorkspaceContract, AnApplicationThatIsThereIsLaunched) {
    const auto launched = scene_->workspace().launchHidden(scene_->makeApplication(), {"1000000"});
    ASSERT_NE(launched, nullptr);
    launched->terminate();
    EXPECT_EQ(scene_->workspace().launchHidden(scene_->missingPath(), {}), nullptr);
}

TEST_P(WorkspaceContract, WhatHasNoIconGivesNoPicture) {
    EXPECT_EQ(scene_->workspace().iconOfFile(scene_->missingPath()), Image());
}

INSTANTIATE_TEST_SUITE_P(
    Workspace, WorkspaceContract,
    testing::Values(Adapter<WorkspaceScene>{"Linux", makeWorkspaceScene<DesktopOfThisMachine>},
                    Adapter<WorkspaceScene>{"Fake", makeWorkspaceScene<DesktopInMemory>}),
    AdapterName());

}  // namespace installer::test

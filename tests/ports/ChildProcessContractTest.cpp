// What every way to run a program as the user promises.

#include <string>

#include <sys/stat.h>
#include <sys/wait.h>

#include "linux/process/LinuxChildProcess.h"
#include "linux/process/PollEventLoop.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakeChildProcess.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// A machine on which programs can be made.
class ChildProcessScene {
  public:
    virtual ~ChildProcessScene() = default;
    [[nodiscard]] virtual ChildProcesses& processes() = 0;
    [[nodiscard]] virtual EventLoop& loop() = 0;
    /// The path of a program that writes these texts to its two pipes and ends.
    [[nodiscard]] virtual std::string program(const std::string& output,
                                              const std::string& error) = 0;
};

namespace {

using Pipe = ChildProcess::Pipe;

class ScriptsOfThisMachine : public ChildProcessScene {
  public:
    ~ScriptsOfThisMachine() override {
        // Those whose objects were destroyed.
        while (::waitpid(-1, nullptr, 0) > 0) {
        }
    }

    ChildProcesses& processes() override { return processes_; }
    EventLoop& loop() override { return loop_; }
    std::string program(const std::string& output, const std::string& error) override {
        const std::string path = folder_.add(
            "program", "#!/bin/sh\nprintf %s '" + output + "'\nprintf %s '" + error + "' >&2\n");
        EXPECT_EQ(::chmod(path.c_str(), 0755), 0);
        return path;
    }

  private:
    ScratchFolder folder_;
    PollEventLoop loop_;
    LinuxChildProcesses processes_{loop_};
};

class ProgramsInMemory : public ChildProcessScene {
  public:
    ChildProcesses& processes() override { return processes_; }
    EventLoop& loop() override { return loop_; }
    std::string program(const std::string& output, const std::string& error) override {
        auto& steps = processes_.programs["/program"];
        if (!output.empty()) steps.emplace_back(Pipe::standardOutput, output);
        if (!error.empty()) steps.emplace_back(Pipe::standardError, error);
        return "/program";
    }

  private:
    FakeEventLoop loop_;
    FakeChildProcesses processes_{loop_};
};

template <class Scene>
std::unique_ptr<ChildProcessScene> makeChildProcessScene() {
    return std::make_unique<Scene>();
}

/// Counts the notices of a process.
class Notices {
  public:
    explicit Notices(ChildProcess& process)
        : output_(process.onDataAvailable(Pipe::standardOutput, [this] { ++ofOutput; })),
          error_(process.onDataAvailable(Pipe::standardError, [this] { ++ofError; })),
          end_(process.onTerminated([this] { ++ofEnd; })) {}

    int ofOutput = 0;
    int ofError = 0;
    int ofEnd = 0;

  private:
    Subscription output_;
    Subscription error_;
    Subscription end_;
};

}  // namespace

class ChildProcessContract : public Contract<ChildProcessScene> {
  protected:
    [[nodiscard]] std::unique_ptr<ChildProcess> make(const std::string& output,
                                                     const std::string& error = "") {
        return scene_->processes().create(scene_->program(output, error), {});
    }
    void turnUntilEndOf(const Notices& notices) {
        while (notices.ofEnd == 0) ASSERT_TRUE(scene_->loop().runOnce());
    }
};

TEST_P(ChildProcessContract, WhatIsWrittenToTheTwoPipesIsKeptApart) {
    const auto process = make("some text", "a warning");
    std::string output;
    std::string error;
    const auto take = [&](Pipe pipe, std::string& text) {
        text += process->availableData(pipe);
        process->waitForDataAndNotify(pipe);
    };
    const auto ofOutput =
        process->onDataAvailable(Pipe::standardOutput, [&] { take(Pipe::standardOutput, output); });
    const auto ofError =
        process->onDataAvailable(Pipe::standardError, [&] { take(Pipe::standardError, error); });
    const Notices notices(*process);
    process->waitForDataAndNotify(Pipe::standardOutput);
    process->waitForDataAndNotify(Pipe::standardError);
    ASSERT_FALSE(process->launch());
    turnUntilEndOf(notices);
    EXPECT_EQ(output, "some text");
    EXPECT_EQ(error, "a warning");
    EXPECT_EQ(notices.ofEnd, 1);
}

TEST_P(ChildProcessContract, EachRequestGetsOneNotice) {
    const auto process = make("some text", "a warning");
    const Notices notices(*process);
    process->waitForDataAndNotify(Pipe::standardOutput);
    ASSERT_FALSE(process->launch());
    turnUntilEndOf(notices);
    EXPECT_EQ(notices.ofOutput, 1);
    EXPECT_EQ(notices.ofError, 0) << "nobody asked";
    EXPECT_EQ(process->availableData(Pipe::standardOutput), "some text");
    EXPECT_EQ(process->availableData(Pipe::standardError), "a warning");
}

TEST_P(ChildProcessContract, WhatIsThereBeforeTheRequestIsToldToo) {
    const auto process = make("some text");
    const Notices notices(*process);
    ASSERT_FALSE(process->launch());
    turnUntilEndOf(notices);
    EXPECT_EQ(notices.ofOutput, 0);
    process->waitForDataAndNotify(Pipe::standardOutput);
    EXPECT_EQ(notices.ofOutput, 0) << "not before the loop turns";
    while (notices.ofOutput == 0) ASSERT_TRUE(scene_->loop().runOnce());
    EXPECT_EQ(process->availableData(Pipe::standardOutput), "some text");
}

TEST_P(ChildProcessContract, TheEndOfAPipeIsToldAsDataAreAndThenNoMore) {
    const auto process = make("");
    const Notices notices(*process);
    process->waitForDataAndNotify(Pipe::standardOutput);
    ASSERT_FALSE(process->launch());
    turnUntilEndOf(notices);
    EXPECT_EQ(notices.ofOutput, 1);
    EXPECT_EQ(process->availableData(Pipe::standardOutput), "");
}

TEST_P(ChildProcessContract, DataAreToldBeforeTheEnd) {
    const auto process = make("some text", "a warning");
    const Notices notices(*process);
    const auto end = process->onTerminated([&] {
        EXPECT_EQ(notices.ofOutput, 1);
        EXPECT_EQ(notices.ofError, 1);
    });
    process->waitForDataAndNotify(Pipe::standardOutput);
    process->waitForDataAndNotify(Pipe::standardError);
    ASSERT_FALSE(process->launch());
    turnUntilEndOf(notices);
}

TEST_P(ChildProcessContract, AProgramThatCannotBeStartedLeavesNothingRunning) {
    const auto process = scene_->processes().create("/nonexistent/program", {});
    ASSERT_NE(process, nullptr);
    const Notices notices(*process);
    process->waitForDataAndNotify(Pipe::standardOutput);
    EXPECT_EQ(process->launch(), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(scene_->loop().runOnce());
    EXPECT_EQ(notices.ofOutput + notices.ofError + notices.ofEnd, 0);
}

TEST_P(ChildProcessContract, AProcessIsLaunchedOnce) {
    const auto process = make("some text");
    const Notices notices(*process);
    ASSERT_FALSE(process->launch());
    EXPECT_TRUE(process->launch());
    turnUntilEndOf(notices);
    EXPECT_EQ(process->availableData(Pipe::standardOutput), "some text");
}

TEST_P(ChildProcessContract, ADestroyedObjectTellsNothingMore) {
    auto process = make("some text", "a warning");
    const Notices notices(*process);
    process->waitForDataAndNotify(Pipe::standardOutput);
    ASSERT_FALSE(process->launch());
    process.reset();
    while (scene_->loop().runOnce()) {
    }
    EXPECT_EQ(notices.ofOutput + notices.ofError + notices.ofEnd, 0);
}

TEST_P(ChildProcessContract, AHandlerMayDestroyTheObject) {
    auto process = make("some text");
    const auto destroy = process->onDataAvailable(Pipe::standardOutput, [&] { process.reset(); });
    const Notices notices(*process);
    process->waitForDataAndNotify(Pipe::standardOutput);
    ASSERT_FALSE(process->launch());
    while (process) ASSERT_TRUE(scene_->loop().runOnce());
    while (scene_->loop().runOnce()) {
    }
    EXPECT_EQ(notices.ofEnd, 0);
}

INSTANTIATE_TEST_SUITE_P(
    ChildProcess, ChildProcessContract,
    testing::Values(Adapter<ChildProcessScene>{"Linux",
                                               makeChildProcessScene<ScriptsOfThisMachine>},
                    Adapter<ChildProcessScene>{"Fake", makeChildProcessScene<ProgramsInMemory>}),
    AdapterName());

}  // namespace installer::test

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "install/rights/TaskOutputReader.h"
#include "ports/EventLoop.h"

namespace installer::test {
namespace {

using Pipe = ChildProcess::Pipe;

/// A process whose notices a test sends.
class ScriptedProcess : public ChildProcess {
  public:
    struct State {
        std::map<Pipe, std::string> inPipe;
        std::map<Pipe, int> armed;
        std::map<Pipe, std::function<void()>> dataHandlers;
        std::function<void()> terminationHandler;
        std::error_code launchError;
        bool launched = false;
    };
    explicit ScriptedProcess(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::error_code launch() override {
        state_->launched = !state_->launchError;
        return state_->launchError;
    }
    void waitForDataAndNotify(Pipe pipe) override { ++state_->armed[pipe]; }
    std::string availableData(Pipe pipe) override {
        return std::exchange(state_->inPipe[pipe], {});
    }
    Subscription onDataAvailable(Pipe pipe, std::function<void()> handler) override {
        state_->dataHandlers[pipe] = std::move(handler);
        return Subscription([state = state_, pipe] { state->dataHandlers.erase(pipe); });
    }
    Subscription onTerminated(std::function<void()> handler) override {
        state_->terminationHandler = std::move(handler);
        return Subscription([state = state_] { state->terminationHandler = nullptr; });
    }

  private:
    std::shared_ptr<State> state_;
};

/// Each turn does the next thing of a list; after the last there are no sources.
class ScriptedLoop : public EventLoop {
  public:
    std::deque<std::function<void()>> turns;
    void runUntilNow() override {}
    bool runOnce() override {
        if (turns.empty()) return false;
        auto turn = std::move(turns.front());
        turns.pop_front();
        turn();
        return true;
    }
};

class TaskOutputReaderTest : public testing::Test {
  protected:
    void sends(Pipe pipe, const std::string& data) {
        loop.turns.emplace_back([this, pipe, data] {
            state->inPipe[pipe] += data;
            state->dataHandlers.at(pipe)();
        });
    }
    void ends() {
        loop.turns.emplace_back([this] { state->terminationHandler(); });
    }

    std::shared_ptr<ScriptedProcess::State> state = std::make_shared<ScriptedProcess::State>();
    ScriptedLoop loop;
    std::optional<TaskOutputReader> reader{std::in_place, std::make_unique<ScriptedProcess>(state),
                                           loop};
};

TEST_F(TaskOutputReaderTest, AsksForBothPipesBeforeTheLaunch) {
    EXPECT_FALSE(state->launched);
    EXPECT_EQ(state->armed[Pipe::standardOutput], 1);
    EXPECT_EQ(state->armed[Pipe::standardError], 1);
}

TEST_F(TaskOutputReaderTest, KeepsThePipesApartAndAsksAgainAfterEachNotice) {
    sends(Pipe::standardOutput, "one");
    sends(Pipe::standardError, "warn");
    sends(Pipe::standardOutput, " two");
    ends();
    EXPECT_FALSE(reader->launchTaskAndRunSynchronous());
    EXPECT_EQ(reader->standardOutputData(), "one two");
    EXPECT_EQ(reader->standardErrorData(), "warn");
    EXPECT_EQ(state->armed[Pipe::standardOutput], 3);
    EXPECT_EQ(state->armed[Pipe::standardError], 2);
}

TEST_F(TaskOutputReaderTest, EndsOnTheNoticeAndLeavesWhatIsStillInThePipe) {
    sends(Pipe::standardOutput, "read");
    ends();
    sends(Pipe::standardOutput, "too late");
    EXPECT_FALSE(reader->launchTaskAndRunSynchronous());
    EXPECT_EQ(reader->standardOutputData(), "read");
    EXPECT_EQ(loop.turns.size(), 1U);
}

TEST_F(TaskOutputReaderTest, EndsEarlyWhenTheLoopHasNoSources) {
    sends(Pipe::standardOutput, "part");
    EXPECT_FALSE(reader->launchTaskAndRunSynchronous());
    EXPECT_EQ(reader->standardOutputData(), "part");
}

TEST_F(TaskOutputReaderTest, ReportsAFailedLaunchWithoutTurningTheLoop) {
    state->launchError = std::make_error_code(std::errc::no_such_file_or_directory);
    ends();
    EXPECT_EQ(reader->launchTaskAndRunSynchronous(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(loop.turns.size(), 1U);
}

TEST_F(TaskOutputReaderTest, UnregistersFromEveryNoticeWhenDestroyed) {
    ASSERT_EQ(state->dataHandlers.size(), 2U);
    ASSERT_TRUE(state->terminationHandler);
    reader.reset();
    EXPECT_TRUE(state->dataHandlers.empty());
    EXPECT_FALSE(state->terminationHandler);
}

TEST_F(TaskOutputReaderTest, KeepsBytesThatAreNoText) {
    sends(Pipe::standardOutput, std::string("\xff\0\x80", 3));
    ends();
    EXPECT_FALSE(reader->launchTaskAndRunSynchronous());
    EXPECT_EQ(reader->standardOutputData(), std::string("\xff\0\x80", 3));
}

}  // namespace
}  // namespace installer::test

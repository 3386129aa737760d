#include <algorithm>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "install/rights/OneLineTasksWithOutput.h"
#include "ports/Authorization.h"
#include "tests/support/FakeChildProcess.h"
#include "tests/support/FakeEventLoop.h"

namespace installer::test {
namespace {

// What tools do with the administrator's rights; see LinuxChildProcessTest for the user's.

/// Runs nothing: gives a status, and a stream that delivers a fixed number of bytes at a time.
class StreamingAuthorization : public Authorization {
  public:
    std::int32_t status = 0;
    bool succeeds = true;          ///< what the tool says of its own work
    std::int32_t statusLater = 0;  ///< what the tool itself says once it was waited for or read
    std::string output;
    std::size_t bytesAtATime = 4096;
    std::string tool;
    std::vector<std::string> arguments;
    int waits = 0;
    int reads = 0;

    bool obtain(std::uint32_t /*flags*/) override { return true; }
    void limitTo(const WriteGrant& /*grant*/) override {}
    void setProgressSink(ProgressSink* /*progress*/) override {}
    PrivilegedLaunch execute(const std::string& path,
                             const std::vector<std::string>& list) override {
        tool = path;
        arguments = list;
        PrivilegedLaunch launch;
        launch.status = status;
        if (status == 0) launch.tool = std::make_unique<Tool>(*this);
        return launch;
    }

  private:
    class Tool : public PrivilegedTool {
      public:
        explicit Tool(StreamingAuthorization& owner) : owner_(owner) {}
        void waitUntilEnded() override { ++owner_.waits; }
        std::size_t readOutput(std::span<char> buffer) override {
            ++owner_.reads;
            const std::size_t count =
                std::min({buffer.size(), owner_.bytesAtATime, owner_.output.size() - read_});
            owner_.output.copy(buffer.data(), count, read_);
            read_ += count;
            return count;
        }
        std::int32_t status() const override {
            return owner_.waits + owner_.reads > 0 ? owner_.statusLater : 0;
        }
        [[nodiscard]] bool hasSucceeded() const override { return owner_.succeeds; }

      private:
        StreamingAuthorization& owner_;
        std::size_t read_ = 0;
    };
};

class OneLineTasksWithOutputPrivilegedRun : public testing::Test {
  protected:
    std::optional<std::string> run(bool wait = true) {
        return tasks.stringByLaunchingPathWithArguments("/bin/rm", {"-fR", "/x"}, authorization,
                                                        &error, wait);
    }

    FakeEventLoop loop;
    FakeChildProcesses processes{loop};
    OneLineTasksWithOutput tasks{processes, loop};
    StreamingAuthorization authorization;
    // Holds something, so that a slot that is not stored to shows.
    std::optional<TaskError> error{std::in_place};
};

std::string numbered(std::size_t size) {
    std::string text;
    for (std::size_t index = 0; index < size; ++index) {
        text += static_cast<char>('a' + index % 26);
    }
    return text;
}

using OutputAndPieces = std::tuple<std::size_t, std::size_t>;
class OneLineTasksWithOutputDiscardedFirstChunk
    : public OneLineTasksWithOutputPrivilegedRun,
      public testing::WithParamInterface<OutputAndPieces> {};

TEST_P(OneLineTasksWithOutputDiscardedFirstChunk, IsAFull64BytesHoweverTheyArrive) {
    const auto [size, pieces] = GetParam();
    authorization.output = numbered(size);
    authorization.bytesAtATime = pieces;
    EXPECT_EQ(run(), size <= 64 ? "" : authorization.output.substr(64));
    EXPECT_FALSE(error);
}

INSTANTIATE_TEST_SUITE_P(SizesAndPieces, OneLineTasksWithOutputDiscardedFirstChunk,
                         testing::Combine(testing::Values(0, 1, 63, 64, 65, 100, 128, 1000),
                                          testing::Values(1, 7, 63, 64, 65)),
                         [](const auto& row) {
                             return std::to_string(std::get<0>(row.param)) + "BytesBy" +
                                    std::to_string(std::get<1>(row.param));
                         });

struct Status {
    std::int32_t given;
    std::int32_t code;
};
class OneLineTasksWithOutputTruncatedStatus : public OneLineTasksWithOutputPrivilegedRun,
                                              public testing::WithParamInterface<Status> {};

TEST_P(OneLineTasksWithOutputTruncatedStatus, IsTheErrorsCode) {
    authorization.status = GetParam().given;
    EXPECT_EQ(run(), std::nullopt);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, GetParam().code);
    EXPECT_EQ(error->domain, "com.apple.NSTask.OneLineTasksWithOutput");
    EXPECT_TRUE(error->userInformation.empty());

    error.reset();
    tasks.authorizedLaunchPath("/bin/mkdir", {}, authorization, &error, true);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Statuses, OneLineTasksWithOutputTruncatedStatus,
                         testing::Values(Status{-60006, 5530}, Status{-60005, 5531},
                                         Status{-59996, 5540}, Status{-60031, 5505}, Status{-1, -1},
                                         Status{40000, -25536}),
                         [](const auto& row) {
                             const std::string digits = std::to_string(std::abs(row.param.given));
                             return (row.param.given < 0 ? "Minus" : "Plus") + digits;
                         });

TEST_F(OneLineTasksWithOutputPrivilegedRun, CountsAStatusWhoseLow16BitsAreZeroAsSuccess) {
    authorization.status = -65536;
    EXPECT_EQ(run(), "");
    EXPECT_FALSE(error);
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, PassesToolAndArgumentsOnAsTheyAre) {
    run();
    EXPECT_EQ(authorization.tool, "/bin/rm");
    EXPECT_EQ(authorization.arguments, (std::vector<std::string>{"-fR", "/x"}));
    tasks.authorizedLaunchPath("/bin/true", {}, authorization, nullptr, true);
    EXPECT_TRUE(authorization.arguments.empty());
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, WithoutWaitStillReadsToTheEnd) {
    authorization.output = numbered(100);
    EXPECT_EQ(run(false), authorization.output.substr(64));
    EXPECT_EQ(authorization.waits, 0);
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, WithWaitWaitsOnce) {
    run(true);
    EXPECT_EQ(authorization.waits, 1);
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, WithoutOutputReadsNothing) {
    authorization.output = numbered(100);
    tasks.authorizedLaunchPath("/bin/mkdir", {}, authorization, &error, true);
    EXPECT_EQ(authorization.reads, 0);
    EXPECT_EQ(authorization.waits, 1);
    EXPECT_FALSE(error);
    tasks.authorizedLaunchPath("/bin/mkdir", {}, authorization, &error, false);
    EXPECT_EQ(authorization.waits, 1);
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, TheLastToolsSuccessIsKnownAndChangesNoResult) {
    EXPECT_FALSE(tasks.lastToolSucceeded());
    EXPECT_EQ(run(), "");
    EXPECT_TRUE(tasks.lastToolSucceeded());
    authorization.succeeds = false;
    EXPECT_EQ(run(), "");
    EXPECT_EQ(error, std::nullopt);
    EXPECT_FALSE(tasks.lastToolSucceeded());
    authorization.succeeds = true;
    EXPECT_EQ(run(), "");
    authorization.status = authorization_status::denied;
    EXPECT_EQ(run(), std::nullopt);
    EXPECT_FALSE(tasks.lastToolSucceeded());
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, ReportsATimeOfLossAsADeniedLaunch) {
    authorization.statusLater = authorization_status::denied;
    EXPECT_EQ(run(), std::nullopt);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, 5531);
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, NeedsNoErrorSlot) {
    authorization.status = authorization_status::canceled;
    EXPECT_EQ(tasks.stringByLaunchingPathWithArguments("/bin/rm", {}, authorization, nullptr, true),
              std::nullopt);
    tasks.authorizedLaunchPath("/bin/rm", {}, authorization, nullptr, true);
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, DecodesEachChunkByItself) {
    // "ä" stands across the end of the second chunk: each of its bytes is no character there.
    authorization.output = std::string(64, '-') + std::string(63, 'x') + "\u00e4" + "\u00f6";
    EXPECT_EQ(run(), std::string(63, 'x') + "\uFFFD" + "\uFFFD" + "\u00f6");
}

TEST_F(OneLineTasksWithOutputPrivilegedRun, KeepsAWholeCharacterAtTheEndOfAChunk) {
    authorization.output = std::string(64, '-') + std::string(62, 'x') + "\u00e4" + "y";
    EXPECT_EQ(run(), std::string(62, 'x') + "\u00e4" + "y");
}

}  // namespace
}  // namespace installer::test

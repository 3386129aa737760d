// What the helper tells its peer of a copy.

#include <array>
#include <chrono>
#include <string>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "tests/privileged/helper/PrivilegedHelperProgram.h"

namespace installer::test {
namespace {

class HelperSessionTest : public PrivilegedHelperProgram {
  protected:
    void addSource(int files) {
        for (int index = 0; index < files; ++index) {
            folder.add("source/" + std::to_string(index), "contents");
        }
    }
    std::string copyRequest() {
        return encodedRequest({"/bin/cp", {"-R", folder / "source", folder / "copy"}}).value();
    }
};

TEST_F(HelperSessionTest, TellsOfProgressAtMostTwentyTimesASecond) {
    addSource(200);
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(helper.sendBytes(copyRequest()));
    std::chrono::milliseconds::rep told = 0;
    std::uint64_t bytes = 0;
    std::optional<Message> message = helper.stream().receive();
    for (; message && progressBytes(*message); message = helper.stream().receive()) {
        ++told;
        bytes += *progressBytes(*message);
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start);
    ASSERT_TRUE(message);
    EXPECT_EQ(exitStatus(*message), 0U);
    EXPECT_EQ(bytes, 200 * std::string("contents").size());
    // One at once, and one with what is left at the end.
    EXPECT_LE(told, time / std::chrono::milliseconds(50) + 2);
}

TEST_F(HelperSessionTest, TellsOfTheBytesOfEachCopyAlone) {
    addSource(1);
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    for (const char* name : {"first", "second", "third"}) {
        const ToolRequest copy{"/bin/cp", {"-R", folder / "source", folder / name}};
        ASSERT_TRUE(helper.sendBytes(encodedRequest(copy).value()));
        std::uint64_t bytes = 0;
        std::optional<Message> message = helper.stream().receive();
        for (; message && progressBytes(*message); message = helper.stream().receive()) {
            bytes += *progressBytes(*message);
        }
        ASSERT_TRUE(message);
        EXPECT_EQ(bytes, std::string("contents").size()) << name;
    }
}

TEST_F(HelperSessionTest, ASignalThatArrivesDuringACopyTakesEffectAfterItsAnswer) {
    addSource(2000);
    HelperProcess helper;
    ASSERT_TRUE(helper.saysHello());
    ASSERT_TRUE(helper.sendBytes(copyRequest()));
    std::optional<Message> message = helper.stream().receive();
    ASSERT_TRUE(message && progressBytes(*message)) << "the copy has begun";
    ASSERT_EQ(::kill(helper.process(), SIGTERM), 0);
    while (message && progressBytes(*message)) message = helper.stream().receive();
    ASSERT_TRUE(message) << "the helper has ended without its answer";
    EXPECT_EQ(exitStatus(*message), 0U);
    EXPECT_EQ(folder.names("copy").size(), 2000U);
    EXPECT_EQ(helper.stream().receive(), std::nullopt) << "it has ended then";
}

TEST_F(HelperSessionTest, FailsIfNobodyIsThereForItsHello) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    reading.reset();
    HelperProcess helper(afterDoing([&] {
        if (::dup2(writing.get(), STDOUT_FILENO) < 0) ::_exit(98);
    }));
    EXPECT_EQ(helper.exitStatus(), 1);
}

/// Writes until the pipe takes nothing more, not even a byte.
void fill(int pipe) {
    const std::string page(4096, '\0');
    ASSERT_EQ(::fcntl(pipe, F_SETFL, O_NONBLOCK), 0);
    while (::write(pipe, page.data(), page.size()) > 0) {
    }
    while (::write(pipe, page.data(), 1) > 0) {
    }
    ASSERT_EQ(::fcntl(pipe, F_SETFL, 0), 0);
}

TEST_F(HelperSessionTest, ACopyDoesNotWaitForAPeerThatDoesNotReadItsProgress) {
    addSource(1);
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    HelperProcess helper(afterDoing([&] {
        if (::dup2(writing.get(), STDOUT_FILENO) < 0) ::_exit(98);
    }));
    MessageStream answers(reading.get(), -1);
    ASSERT_TRUE(answers.receive()) << "its hello";
    fill(writing.get());
    ASSERT_TRUE(helper.sendBytes(encodedGrant(everyFolder()) + copyRequest()));
    // Only a helper that waits for its peer keeps this from coming to an end.
    const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!folder.holds("copy") && std::chrono::steady_clock::now() < latest) ::sched_yield();
    EXPECT_EQ(folder.names("copy"), std::vector<std::string>{"0"});
    writing.reset();
    std::array<char, 65536> buffer{};
    while (::read(reading.get(), buffer.data(), buffer.size()) ==
           static_cast<ssize_t>(buffer.size())) {
    }
    helper.closeConnection();
    EXPECT_EQ(helper.exitStatus(), 0);
}

}  // namespace
}  // namespace installer::test

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/system/FileDescriptor.h"
#include "privileged/system/Spawn.h"
#include "tests/privileged/system/SignalsThatInterrupt.h"
#include "tests/privileged/trees/Disk.h"

namespace installer::test {
namespace {

struct Pipe {
    Pipe() {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
        reading.reset(ends[0]);
        writing.reset(ends[1]);
    }
    std::string contents() {
        writing.reset();
        std::string text;
        std::array<char, 4096> buffer = {};
        ssize_t count = 0;
        while ((count = read(reading.get(), buffer.data(), buffer.size())) > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return text;
    }
    FileDescriptor reading;
    FileDescriptor writing;
};

SpawnRequest shell(const std::string& script) {
    SpawnRequest request;
    request.path = "/bin/sh";
    request.arguments = {"-c", script};
    return request;
}

/// The wait status of the program.
std::optional<int> run(const SpawnRequest& request) {
    const auto process = spawn(request);
    if (!process) return std::nullopt;
    const auto status = waitForEnd(process.value());
    if (!status) return std::nullopt;
    return status.value();
}

/// What the program writes to its standard output.
std::string outputOf(SpawnRequest request) {
    Pipe pipe;
    request.standardOutput = pipe.writing.get();
    EXPECT_EQ(run(request), 0);
    return pipe.contents();
}

TEST(Spawn, GivesTheProgramItsArgumentsAsTheyAre) {
    SpawnRequest request;
    request.path = "/usr/bin/printf";
    request.arguments = {"<%s>", "", "two words", "$HOME;*"};
    EXPECT_EQ(outputOf(request), "<><two words><$HOME;*>");
}

TEST(Spawn, RefusesANulInThePathOrInAnArgument) {
    SpawnRequest path;
    path.path = std::string("/bin/true\0x", 11);
    EXPECT_EQ(spawn(path).error(), std::errc::invalid_argument);
    SpawnRequest argument;
    argument.path = "/bin/true";
    argument.arguments = {"good", std::string("a\0b", 3)};
    EXPECT_EQ(spawn(argument).error(), std::errc::invalid_argument);
}

TEST(Spawn, SaysWhyAProgramCannotBeStarted) {
    SpawnRequest request;
    request.path = "/no/such/program";
    EXPECT_EQ(spawn(request).error(), std::errc::no_such_file_or_directory);
    request.path = "/etc/passwd";
    EXPECT_EQ(spawn(request).error(), std::errc::permission_denied);
}

TEST(Spawn, RefusesAStreamThatIsNotOpen) {
    constexpr int notOpen = 700;
    ASSERT_EQ(fcntl(notOpen, F_GETFD), -1);
    for (int SpawnRequest::* const stream :
         {&SpawnRequest::standardInput, &SpawnRequest::standardOutput,
          &SpawnRequest::standardError}) {
        SpawnRequest request = shell("exit 0");
        request.*stream = notOpen;
        EXPECT_EQ(spawn(request).error(), std::errc::bad_file_descriptor);
    }
}

TEST(Spawn, StreamsThatAreNotGivenAreNotThisProcessesOwn) {
    EXPECT_EQ(inChild([] {
                  Pipe input;
                  Pipe output;
                  static_cast<void>(!write(input.writing.get(), "not empty\n", 10));
                  dup2(input.reading.get(), STDIN_FILENO);
                  for (const int own : {STDOUT_FILENO, STDERR_FILENO}) {
                      dup2(output.writing.get(), own);
                  }
                  const auto status = run(shell("echo out; echo err >&2; read line"));
                  for (const int own : {STDOUT_FILENO, STDERR_FILENO}) close(own);
                  return output.contents() + (status == 0 ? "it could read" : "nothing to read");
              }),
              "nothing to read");
}

TEST(Spawn, AStreamMayBeThisProcessesOwn) {
    EXPECT_EQ(inChild([] {
                  Pipe pipe;
                  dup2(pipe.writing.get(), STDERR_FILENO);
                  SpawnRequest request = shell("printf said >&2");
                  request.standardError = SpawnRequest::own;
                  static_cast<void>(run(request));
                  close(STDERR_FILENO);
                  return pipe.contents();
              }),
              "said");
}

// As in a process that was started without some of its own.
TEST(Spawn, StreamsMayHaveTheNumbersOfOthers) {
    Pipe input;
    Pipe output;
    Pipe error;
    EXPECT_EQ(inChild([&] {
                  static_cast<void>(!write(input.writing.get(), "in\n", 3));
                  const std::array from = {output.writing.get(), error.writing.get(),
                                           input.reading.get()};
                  for (int number = 0; number < 3; ++number) {
                      dup2(from[static_cast<std::size_t>(number)], number);
                  }
                  SpawnRequest request = shell("read word; printf \"out $word\"; printf err >&2");
                  request.standardOutput = 0;
                  request.standardError = 1;
                  request.standardInput = 2;
                  return run(request) == 0 ? std::string() : std::string("failed");
              }),
              "");
    EXPECT_EQ(output.contents(), "out in");
    EXPECT_EQ(error.contents(), "err");
}

TEST(Spawn, ConnectsItsStreamsInAProcessThatWasStartedWithoutSome) {
    Pipe output;
    Pipe error;
    EXPECT_EQ(inChild([&] {
                  dup2(output.writing.get(), STDOUT_FILENO);
                  dup2(error.writing.get(), STDERR_FILENO);
                  close(STDIN_FILENO);
                  SpawnRequest request = shell("cat; printf out; printf err >&2");
                  request.standardOutput = STDOUT_FILENO;
                  request.standardError = STDERR_FILENO;
                  return run(request) == 0 ? std::string() : std::string("failed");
              }),
              "");
    EXPECT_EQ(output.contents(), "out");
    EXPECT_EQ(error.contents(), "err");
}

TEST(Spawn, GivesTheProgramNoOtherDescriptor) {
    const FileDescriptor kept(fcntl(STDERR_FILENO, F_DUPFD, 700));
    ASSERT_TRUE(kept);
    EXPECT_NE(run(shell("test -e /proc/self/fd/" + std::to_string(kept.get()))), 0);
}

TEST(Spawn, TheEnvironmentIsInheritedOrEmpty) {
    ASSERT_EQ(setenv("INSTALLER_CANARY", "alive", 1), 0);
    SpawnRequest request;
    request.path = "/usr/bin/env";
    EXPECT_NE(outputOf(request).find("INSTALLER_CANARY=alive\n"), std::string::npos);
    request.environment = SpawnRequest::Environment::empty;
    EXPECT_EQ(outputOf(request), "");
    unsetenv("INSTALLER_CANARY");
}

TEST(Spawn, AProgramCanHaveASessionOfItsOwn) {
    for (const auto& [session, isItsOwn] : {std::pair(SpawnRequest::Session::inherited, false),
                                            std::pair(SpawnRequest::Session::itsOwn, true)}) {
        Pipe pipe;
        SpawnRequest request = shell("cat");
        request.standardInput = pipe.reading.get();
        request.session = session;
        const auto process = spawn(request);
        ASSERT_TRUE(process);
        EXPECT_EQ(getsid(process.value()), isItsOwn ? process.value() : getsid(0));
        pipe.writing.reset();
        EXPECT_EQ(waitForEnd(process.value()).value(), 0);
    }
}

TEST(Spawn, TheProgramHasEverySignalAtItsDefaultAndNoneBlocked) {
    EXPECT_EQ(inChild([] {
                  sigset_t all;
                  sigfillset(&all);
                  sigprocmask(SIG_SETMASK, &all, nullptr);
                  signal(SIGTERM, SIG_IGN);
                  return std::to_string(run(shell("kill -TERM $$; exit 3")).value_or(-1));
              }),
              std::to_string(SIGTERM));
}

TEST(SpawnWaitForEnd, GivesTheWaitStatus) {
    EXPECT_EQ(WEXITSTATUS(run(shell("exit 7")).value()), 7);
    EXPECT_EQ(WTERMSIG(run(shell("kill -KILL $$")).value()), SIGKILL);
}

TEST(SpawnWaitForEnd, GoesOnWaitingWhenASignalInterruptsIt) {
    Pipe pipe;
    SpawnRequest request = shell("cat; exit 7");
    request.standardInput = pipe.reading.get();
    const auto process = spawn(request);
    ASSERT_TRUE(process);
    // The program ends with its input, and so not before the last of these signals.
    const SignalsThatInterrupt signals([&](int number) {
        if (number == 20) close(pipe.writing.get());
    });
    const auto status = waitForEnd(process.value());
    static_cast<void>(pipe.writing.release());
    ASSERT_TRUE(status) << status.error().message();
    EXPECT_EQ(WEXITSTATUS(status.value()), 7);
}

TEST(SpawnWaitForEnd, CallsItsCallerUntilTheProgramEnds) {
    Pipe pipe;
    SpawnRequest request = shell("cat; exit 7");
    request.standardInput = pipe.reading.get();
    const auto process = spawn(request);
    ASSERT_TRUE(process);
    int calls = 0;
    const auto status = waitForEnd(process.value(), [&] {
        if (++calls == 3) pipe.writing.reset();
    });
    EXPECT_GE(calls, 3);
    EXPECT_EQ(WEXITSTATUS(status.value()), 7);
}

TEST(SpawnWaitForEnd, SaysThatAProcessWasWaitedForElsewhere) {
    const auto process = spawn(shell("exit 0"));
    ASSERT_TRUE(process);
    ASSERT_EQ(waitpid(process.value(), nullptr, 0), process.value());
    EXPECT_EQ(waitForEnd(process.value()).error(), std::errc::no_child_process);
}

}  // namespace
}  // namespace installer::test

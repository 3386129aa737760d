#include "tests/privileged/helper/HelperProcess.h"

#include <array>
#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace installer::test {
namespace {

// Far more than anything here takes: a helper that hangs is a failed test, not a test that hangs.
constexpr int longestWait = 60;

void endIfItHangs(pid_t process) {
    const FileDescriptor end(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    pollfd polled{end.get(), POLLIN, 0};
    if (end && ::poll(&polled, 1, longestWait * 1000) == 0) ::kill(process, SIGKILL);
}

}  // namespace

WriteGrant everyFolder() {
    WriteGrant grant;
    grant.addFolder("/");
    for (const auto& entry : std::filesystem::directory_iterator("/")) {
        grant.addDestination(entry.path().string());
    }
    return grant;
}

std::string encodedGrant(const WriteGrant& grant) {
    const auto encoded = [](PlanTexts::Kind kind, const auto& texts) {
        return encodedPlan({kind, {texts.begin(), texts.end()}});
    };
    return encoded(PlanTexts::Kind::destinations, grant.destinations()) +
           encoded(PlanTexts::Kind::removableNames, grant.removableNames());
}

HelperProcess::HelperProcess(const Start& start)
    : grant_(start.grant ? *start.grant : everyFolder()) {
    std::array<int, 2> ends{};
    std::array<int, 2> errorPipe{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) std::abort();
    if (::pipe2(errorPipe.data(), O_CLOEXEC) != 0) std::abort();
    std::vector<char*> environment;
    environment.reserve(start.environment.size() + 1);
    for (const std::string& variable : start.environment) {
        environment.push_back(const_cast<char*>(variable.c_str()));
    }
    environment.push_back(nullptr);
    std::string name = "privileged-helper";
    std::string into = "--into";
    std::vector<char*> words = {name.data()};
    for (const std::string& argument : start.arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    for (const std::string& folder : grant_.folders()) {
        words.push_back(into.data());
        words.push_back(const_cast<char*>(folder.c_str()));
    }
    words.push_back(nullptr);
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(ends[1], STDIN_FILENO);
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(errorPipe[1], STDERR_FILENO);
        // Opened before anything changes: another user need not be able to reach the build's
        // folder. The number is out of the way of those that tests open.
        const int built = ::open(PRIVILEGED_HELPER, O_PATH | O_CLOEXEC);
        const int program = ::fcntl(built, F_DUPFD_CLOEXEC, 500);
        if (start.before) start.before();
        ::fexecve(program, words.data(), environment.data());
        ::_exit(99);
    }
    ::close(ends[1]);
    ::close(errorPipe[1]);
    connection_.reset(ends[0]);
    standardError_.reset(errorPipe[0]);
    const timeval limit{longestWait, 0};
    ::setsockopt(ends[0], SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    stream_.emplace(connection_.get(), connection_.get());
}

HelperProcess::~HelperProcess() {
    closeConnection();
    exitStatus();
}

bool HelperProcess::saysHello() {
    const std::optional<Message> message = stream_->receive();
    if (!message || helloVersion(*message) != protocolVersion) return false;
    // A helper that has ended already is noticed by the next request.
    static_cast<void>(stream_->send(encodedGrant(grant_)));
    return true;
}

std::optional<std::uint32_t> HelperProcess::run(const std::string& tool,
                                                const std::vector<std::string>& arguments) {
    const std::optional<std::string> request = encodedRequest({tool, arguments});
    if (!request || !stream_->send(*request)) return std::nullopt;
    while (const std::optional<Message> message = stream_->receive()) {
        if (const auto status = installer::exitStatus(*message)) return status;
    }
    return std::nullopt;
}

int HelperProcess::exitStatus() {
    if (exitStatus_) return *exitStatus_;
    endIfItHangs(process_);
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return *exitStatus_;
}

std::string HelperProcess::standardError() {
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(standardError_.get(), buffer.data(), buffer.size());
        if (count <= 0) return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace installer::test

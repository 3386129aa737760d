#include "privileged/helper/DesktopDatabase.h"

#include <array>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/system/Spawn.h"
#include "privileged/system/SystemError.h"
#include "privileged/wall/KernelWall.h"

namespace installer {

namespace {

constexpr const char* tool = "/usr/bin/update-desktop-database";
constexpr const char* machineWideApplications = "/usr/share/applications";

/// Else the peer's connection would stay open as long as this process.
void leaveStandardStreams() {
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (nothing < 0 || ::dup2(nothing, stream) < 0) ::close(stream);
    }
    if (nothing >= 0) ::close(nothing);
}

[[noreturn]] void serve(int requests) {
    leaveStandardStreams();
    static_cast<void>(raiseKernelWall({machineWideApplications}, Devices::usable));
    giveUpOtherRights();
    char request = 0;
    for (;;) {
        const ssize_t count = ::read(requests, &request, 1);
        if (count == 1) static_cast<void>(startDesktopDatabaseRefresh());
        if (count == 0 || (count < 0 && errno != EINTR)) ::_exit(0);
    }
}

}  // namespace

namespace {

/// 0 if the machine has no such tool.
Result<pid_t> startTool() {
    SpawnRequest request;
    request.path = tool;
    request.arguments = {machineWideApplications};
    request.environment = SpawnRequest::Environment::empty;
    request.session = SpawnRequest::Session::itsOwn;
    const Result<pid_t> started = spawn(request);
    if (started.error() == std::errc::no_such_file_or_directory) return pid_t{0};
    return started;
}

}  // namespace

std::error_code startDesktopDatabaseRefresh() {
    return startTool().error();
}

std::error_code startAwaitedDesktopDatabaseRefresh() {
    const Result<pid_t> tool = startTool();
    if (!tool || tool.value() == 0) return tool.error();
    try {
        std::thread([process = tool.value()] { static_cast<void>(waitForEnd(process)); }).detach();
    } catch (const std::system_error&) {
        static_cast<void>(waitForEnd(tool.value()));
    }
    return {};
}

DesktopDatabase::DesktopDatabase() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
    const FileDescriptor toServe(ends[0]);
    requests_.reset(ends[1]);
    process_ = ::fork();
    if (process_ != 0) return;
    requests_.reset();
    serve(toServe.get());
}

DesktopDatabase::~DesktopDatabase() {
    requests_.reset();
    // The helper ignores the ends of its children, and then this waits for all of them.
    if (process_ > 0) ::waitpid(process_, nullptr, 0);
}

std::error_code DesktopDatabase::refresh() {
    if (process_ <= 0) return systemError(ECHILD);
    return ::write(requests_.get(), "r", 1) == 1 ? std::error_code() : systemError();
}

}  // namespace installer

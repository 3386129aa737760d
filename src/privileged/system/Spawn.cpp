#include "privileged/system/Spawn.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/system/AwaitReadable.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/SystemError.h"

namespace installer {
namespace {

/// The two descriptions that posix_spawn takes, released together.
class SpawnSettings {
  public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

void setAttributes(posix_spawnattr_t& attributes, SpawnRequest::Session session) {
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    const int ownSession = session == SpawnRequest::Session::itsOwn ? POSIX_SPAWN_SETSID : 0;
    const int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | ownSession;
    posix_spawnattr_setflags(&attributes, static_cast<short>(flags));
}

/// A copy of a stream's descriptor above the standard three: this process may itself have been
/// started without some of these, and then connecting one stream would overwrite another's.
FileDescriptor aboveTheStandardThree(int stream) {
    return FileDescriptor(stream >= 0 ? ::fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1);
}

void connectStream(posix_spawn_file_actions_t& actions, int requested, const FileDescriptor& from,
                   int stream) {
    if (from) {
        posix_spawn_file_actions_adddup2(&actions, from.get(), stream);
    } else if (requested != SpawnRequest::own) {
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    }
}

bool holdsNul(const SpawnRequest& request) {
    if (request.path.find('\0') != std::string::npos) return true;
    for (const std::string& argument : request.arguments) {
        if (argument.find('\0') != std::string::npos) return true;
    }
    return false;
}

}  // namespace

Result<pid_t> spawn(const SpawnRequest& request) {
    if (holdsNul(request)) return systemError(EINVAL);
    const FileDescriptor input = aboveTheStandardThree(request.standardInput);
    const FileDescriptor output = aboveTheStandardThree(request.standardOutput);
    const FileDescriptor error = aboveTheStandardThree(request.standardError);
    for (const auto& [requested, copy] :
         {std::pair(request.standardInput, &input), std::pair(request.standardOutput, &output),
          std::pair(request.standardError, &error)}) {
        if (requested >= 0 && !*copy) return systemError(EBADF);
    }
    SpawnSettings settings;
    setAttributes(settings.attributes, request.session);
    connectStream(settings.actions, request.standardInput, input, STDIN_FILENO);
    connectStream(settings.actions, request.standardOutput, output, STDOUT_FILENO);
    connectStream(settings.actions, request.standardError, error, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&settings.actions, STDERR_FILENO + 1);

    // posix_spawn promises not to change the texts; its signature is older than const.
    std::vector<char*> arguments{const_cast<char*>(request.path.c_str())};
    for (const std::string& argument : request.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    char* emptyEnvironment[] = {nullptr};
    const bool inherits = request.environment == SpawnRequest::Environment::inherited;

    pid_t process = -1;
    const int failure =
        ::posix_spawn(&process, request.path.c_str(), &settings.actions, &settings.attributes,
                      arguments.data(), inherits ? environ : emptyEnvironment);
    if (failure != 0) return systemError(failure);
    return process;
}

Result<int> waitForEnd(pid_t process, const std::function<void()>& whileWaiting) {
    if (whileWaiting) {
        const FileDescriptor end(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
        if (end) awaitReadable(end.get(), whileWaiting);
    }
    int status = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(process, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (ended < 0) return systemError(errno);
    return status;
}

}  // namespace installer

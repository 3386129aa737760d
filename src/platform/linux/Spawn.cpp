#include "platform/linux/Spawn.h"

#include <cerrno>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace installer {
namespace {

std::error_code systemError(int number) {
    return {number, std::generic_category()};
}

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

void resetSignals(posix_spawnattr_t& attributes) {
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
}

void connectStream(posix_spawn_file_actions_t& actions, int from, int stream, int flags) {
    if (from >= 0) {
        posix_spawn_file_actions_adddup2(&actions, from, stream);
    } else {
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", flags, 0);
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
    SpawnSettings settings;
    resetSignals(settings.attributes);
    connectStream(settings.actions, request.standardInput, STDIN_FILENO, O_RDONLY);
    connectStream(settings.actions, request.standardOutput, STDOUT_FILENO, O_WRONLY);
    if (request.standardError >= 0) {
        posix_spawn_file_actions_adddup2(&settings.actions, request.standardError, STDERR_FILENO);
    }
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
    const int error =
        ::posix_spawn(&process, request.path.c_str(), &settings.actions, &settings.attributes,
                      arguments.data(), inherits ? environ : emptyEnvironment);
    if (error != 0) return systemError(error);
    return process;
}

Result<int> waitForEnd(pid_t process) {
    int status = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(process, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (ended < 0) return systemError(errno);
    return status;
}

}  // namespace installer

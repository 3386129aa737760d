#include "linux/rights/HelperCommand.h"

#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {
namespace {

/// The place where the system itself keeps the program; PATH is anybody's.
std::string programAt(const char* path) {
    return ::access(path, X_OK) == 0 ? path : "";
}

/// Somebody listens there: the socket of a bus that is gone stays behind.
bool hasListener(const char* path) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    return socket && ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address),
                               sizeof address) == 0;
}

/// A terminal that this process may read from: in its background it would only be stopped.
bool canAskOnTerminal() {
    if (::isatty(STDIN_FILENO) == 0) return false;
    const FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC));
    return terminal && ::tcgetpgrp(terminal.get()) == ::getpgrp();
}

std::string sudoPrompt(const std::string& reason) {
    // A percent sign has a meaning in sudo's prompts; %p becomes the login name.
    return replacingAll(reason, "%", "%%") + "\n[sudo] password for %p: ";
}

}  // namespace

AdministratorMeans AdministratorMeans::current() {
    AdministratorMeans means;
    means.isRoot = ::geteuid() == 0;
    means.pkexec = programAt("/usr/bin/pkexec");
    means.hasSystemBus = hasListener("/run/dbus/system_bus_socket");
    means.textAgent = programAt("/usr/bin/pkttyagent");
    means.hasSessions = ::access("/run/systemd/seats", F_OK) == 0;
    means.sudo = programAt("/usr/bin/sudo");
    means.hasTerminal = canAskOnTerminal();
    means.hasAskpass = std::getenv("SUDO_ASKPASS") != nullptr;
    return means;
}

AdministratorWay administratorWay(const AdministratorMeans& means) {
    if (means.isRoot) return AdministratorWay::alreadyRoot;
    if (!means.pkexec.empty() && means.hasSystemBus) return AdministratorWay::polkit;
    if (means.sudo.empty()) return AdministratorWay::none;
    if (means.hasTerminal) return AdministratorWay::sudoOnTerminal;
    return means.hasAskpass ? AdministratorWay::sudoWithAskpass
                            : AdministratorWay::sudoWithoutAsking;
}

bool mayAsk(AdministratorWay way) {
    return way == AdministratorWay::polkit || way == AdministratorWay::sudoOnTerminal ||
           way == AdministratorWay::sudoWithAskpass;
}

std::optional<int> dismissedExitStatus(AdministratorWay way) {
    constexpr int dismissedByPkexec = 126;
    return way == AdministratorWay::polkit ? std::optional(dismissedByPkexec) : std::nullopt;
}

std::optional<SpawnRequest> terminalAgentCommand(AdministratorWay way,
                                                 const AdministratorMeans& means) {
    if (way != AdministratorWay::polkit || !means.hasTerminal || means.textAgent.empty()) {
        return std::nullopt;
    }
    SpawnRequest request;
    request.path = means.textAgent;
    request.arguments = {"--process", std::to_string(::getpid()), "--notify-fd", "1"};
    // Without sessions polkit never looks for a fallback, and there is no dialogue to stand
    // behind.
    if (means.hasSessions) request.arguments.emplace_back("--fallback");
    request.standardError = SpawnRequest::own;
    return request;
}

SpawnRequest helperCommand(AdministratorWay way, const AdministratorMeans& means,
                           const std::string& helperPath, const std::string& reason) {
    SpawnRequest request;
    request.standardError = SpawnRequest::own;
    switch (way) {
        case AdministratorWay::none:
            break;
        case AdministratorWay::alreadyRoot:
            // Variables that an earlier sudo left would name another user.
            request.environment = SpawnRequest::Environment::empty;
            request.path = helperPath;
            break;
        case AdministratorWay::polkit:
            // pkexec refuses to run where some variables hold what it does not expect, and makes
            // the helper's environment itself.
            request.environment = SpawnRequest::Environment::empty;
            request.path = means.pkexec;
            // Its own way to ask on a terminal refuses the right password, too: it is root that
            // asks, and the user's answer that comes back.
            request.arguments = {"--disable-internal-agent", helperPath};
            break;
        // With -k sudo neither counts on what was granted to another command nor remembers what is
        // granted here: the rights end with the run.
        case AdministratorWay::sudoOnTerminal:
            request.path = means.sudo;
            request.arguments = {"-k", "-p", sudoPrompt(reason), "--", helperPath};
            break;
        case AdministratorWay::sudoWithAskpass:
            request.path = means.sudo;
            request.arguments = {"-k", "-A", "-p", sudoPrompt(reason), "--", helperPath};
            break;
        case AdministratorWay::sudoWithoutAsking:
            request.path = means.sudo;
            request.arguments = {"-n", "--", helperPath};
            break;
    }
    return request;
}

}  // namespace installer

#include "linux/rights/HelperCommand.h"

#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/VisibleText.h"
#include "privileged/system/FileDescriptor.h"

namespace installer {
namespace {

/// Programs are taken from fixed paths, because the user controls PATH.
std::string programAt(const char* path) {
    return ::access(path, X_OK) == 0 ? path : "";
}

/// Whether a process listens on the socket; the socket file outlives a bus that has ended.
bool hasListener(const char* path) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    return socket && ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address),
                               sizeof address) == 0;
}

/// Whether this process may read from its terminal; a background process would be stopped.
bool canAskOnTerminal() {
    if (::isatty(STDIN_FILENO) == 0) return false;
    const FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC));
    return terminal && ::tcgetpgrp(terminal.get()) == ::getpgrp();
}

std::string sudoPrompt(const std::string& reason, const std::vector<std::string>& folderLines) {
    std::string text = visibleText(reason);
    for (const std::string& line : folderLines) text += "\n" + visibleText(line);
    // A percent sign has a meaning in sudo's prompts; %p becomes the login name.
    return replacingAll(text, "%", "%%") + "\n[sudo] password for %p: ";
}

void addOption(SpawnRequest& request, const char* name, const std::string& value) {
    request.arguments.emplace_back(name);
    request.arguments.push_back(value);
}

}  // namespace

AdministratorMeans AdministratorMeans::current() {
    AdministratorMeans means;
    means.isRoot = ::geteuid() == 0;
    if (means.isRoot) return means;  // nothing else is needed
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
    // Without login sessions polkit ignores fallback agents, and no desktop dialog can come first.
    if (means.hasSessions) request.arguments.emplace_back("--fallback");
    request.standardError = SpawnRequest::own;
    return request;
}

SpawnRequest helperCommand(AdministratorWay way, const AdministratorMeans& means,
                           const HelperPlace& helper, const std::string& reason,
                           const std::vector<std::string>& folderLines) {
    SpawnRequest request;
    request.standardError = SpawnRequest::own;
    switch (way) {
        case AdministratorWay::none:
        case AdministratorWay::alreadyRoot:
            break;
        case AdministratorWay::polkit:
            // pkexec refuses to run if some variables have unexpected values, and makes the
            // helper's environment itself.
            request.environment = SpawnRequest::Environment::empty;
            request.path = means.pkexec;
            // pkexec's internal agent rejects even the right password: it runs as root, but the
            // answer comes from the user.
            request.arguments = {"--disable-internal-agent", helper.path, "--started-by", "polkit"};
            break;
        // With -k sudo uses no cached credentials and caches none: the rights end with the run.
        case AdministratorWay::sudoOnTerminal:
            request.path = means.sudo;
            request.arguments = {"-k",  "-p",        sudoPrompt(reason, folderLines),
                                 "--",  helper.path, "--started-by",
                                 "sudo"};
            break;
        case AdministratorWay::sudoWithAskpass:
            request.path = means.sudo;
            request.arguments = {"-k", "-A",        "-p",           sudoPrompt(reason, folderLines),
                                 "--", helper.path, "--started-by", "sudo"};
            break;
        case AdministratorWay::sudoWithoutAsking:
            request.path = means.sudo;
            request.arguments = {"-n", "--", helper.path, "--started-by", "sudo"};
            break;
    }
    if (!helper.volume.empty()) addOption(request, "--volume", helper.volume);
    if (!helper.home.empty()) addOption(request, "--home", helper.home);
    for (const std::string& folder : helper.folders) addOption(request, "--into", folder);
    return request;
}

}  // namespace installer

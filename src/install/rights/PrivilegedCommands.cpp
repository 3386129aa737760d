#include "install/rights/PrivilegedCommands.h"

#include "ports/Platform.h"

namespace installer {

namespace {

constexpr const char* lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
    "LaunchServices.framework/Versions/A/Support/lsregister";

/// The error of a command that has no authorization: the same as for a denied request.
TaskError deniedError() {
    TaskError error;
    error.code = static_cast<std::uint16_t>(authorization_status::denied);
    return error;
}

}  // namespace

bool isFatalAuthCode(std::uint32_t code) {
    return code >= 5530 && code <= 5540;
}

PrivilegedCommands::PrivilegedCommands(Platform& platform, InstallRun& run)
    : tasks_(platform.processes, platform.eventLoop), run_(run) {}

std::optional<TaskError> PrivilegedCommands::run(const std::string& tool,
                                                 const Arguments& arguments, Output output) {
    if (!run_.authorization) return deniedError();
    std::optional<TaskError> error;
    if (output == Output::read) {
        tasks_.stringByLaunchingPathWithArguments(tool, arguments, *run_.authorization, &error,
                                                  true);
    } else {
        tasks_.authorizedLaunchPath(tool, arguments, *run_.authorization, &error, true);
    }
    return error;
}

PrivilegedCommands::Outcome PrivilegedCommands::runChecked(const std::string& tool,
                                                           const Arguments& arguments,
                                                           Output output) {
    const std::optional<TaskError> error = run(tool, arguments, output);
    if (!error || !isFatalAuthCode(static_cast<std::uint32_t>(error->code))) {
        return Outcome::finished;
    }
    run_.authDenied = true;
    return Outcome::refused;
}

PrivilegedCommands::Outcome PrivilegedCommands::makeFolders(const std::string& folder) {
    return runChecked("/bin/mkdir", {"-m775", "-p", folder}, Output::leave);
}

void PrivilegedCommands::giveFolderToUser(const std::string& folder) {
    run("/usr/sbin/chown", {"-R", run_.ownerString, folder}, Output::leave);
}

PrivilegedCommands::Outcome PrivilegedCommands::removeItem(const std::string& path) {
    return runChecked("/bin/rm", {"-fR", path});
}

PrivilegedCommands::Outcome PrivilegedCommands::copyItem(const std::string& source,
                                                         const std::string& destination) {
    return runChecked("/bin/cp", {"-R", source, destination});
}

PrivilegedCommands::Outcome PrivilegedCommands::giveItemToUser(const std::string& path) {
    return runChecked("/usr/sbin/chown", {"-R", run_.ownerString, path});
}

PrivilegedCommands::Outcome PrivilegedCommands::setItemPermissions(const std::string& path) {
    return runChecked("/bin/chmod", {"-R", "0775", path});
}

void PrivilegedCommands::removeQuarantine(const std::string& path) {
    run("/usr/bin/xattr", {"-dr", "com.apple.quarantine", path});
}

void PrivilegedCommands::runLsregister() {
    if (!run_.authorization) return;
    tasks_.stringByLaunchingPathWithArguments(lsregister, {"-apps"}, *run_.authorization, nullptr,
                                              false);
}

void PrivilegedCommands::renewLogFile(const std::string& path) {
    run("/bin/rm", {"-fR", path});
    run("/usr/bin/touch", {path});
    run("/usr/sbin/chown", {"-R", run_.ownerString, path});
    // Not the chmod that installed items get: the two paths differ on purpose.
    run("/usr/sbin/chmod", {"-R", "0644", path});
}

void PrivilegedCommands::makeIdentifierFile(const std::string& path) {
    run("/usr/bin/touch", {path});
    run("/usr/sbin/chown", {"-R", run_.ownerString, path});
    run("/bin/chmod", {"-R", "0664", path});
}

}  // namespace installer

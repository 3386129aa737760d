#include "install/rights/PrivilegedCommands.h"

#include <utility>

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

/// While this object lives, somebody may be asked.
class Asking {
  public:
    explicit Asking(const InstallRun& run)
        : run_(run), asks_(run.onAsking && run.authorization && run.authorization->mayAskNow()) {
        if (asks_) run_.onAsking(true);
    }
    ~Asking() {
        if (asks_) run_.onAsking(false);
    }
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

  private:
    const InstallRun& run_;
    bool asks_;
};

}  // namespace

bool isFatalAuthCode(std::uint32_t code) {
    return code >= 5530 && code <= 5540;
}

PrivilegedCommands::PrivilegedCommands(Platform& platform, InstallRun& run)
    : tasks_(platform.processes, platform.eventLoop), run_(run) {}

std::optional<TaskError> PrivilegedCommands::run(const std::string& tool,
                                                 const Arguments& arguments, Output output) {
    // A loss that this tells of shows in this command's own result.
    static_cast<void>(confirmItems());
    if (!run_.authorization) return deniedError();
    const Asking asking(run_);
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
    return checked(run(tool, arguments, output));
}

PrivilegedCommands::Outcome PrivilegedCommands::checked(const std::optional<TaskError>& error) {
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

PrivilegedCommands::Outcome PrivilegedCommands::finishItem(const std::string& path) {
    if (sentItems_.size() >= mostSentItems && confirmFirst() == Outcome::refused) {
        return Outcome::refused;
    }
    auto owner = startChecked("/usr/sbin/chown", {"-R", run_.ownerString, path});
    if (!owner) return Outcome::refused;
    auto permissions = startChecked("/bin/chmod", {"-R", "0775", path});
    if (!permissions) return Outcome::refused;
    sentItems_.push_back({path, std::move(*owner), std::move(*permissions)});
    // The first answers of a run tell whether there are rights at all.
    return run_.installedPaths.empty() ? confirmItems() : Outcome::finished;
}

std::optional<PrivilegedLaunch> PrivilegedCommands::startChecked(const std::string& tool,
                                                                 const Arguments& arguments) {
    const Asking asking(run_);
    std::optional<TaskError> error;
    PrivilegedLaunch launch;
    if (run_.authorization) {
        launch = tasks_.start(tool, arguments, *run_.authorization, &error);
    } else {
        error = deniedError();
    }
    if (checked(error) == Outcome::refused) {
        // The items before this one are confirmed all the same, as far as their answers come.
        static_cast<void>(confirmItems());
        return std::nullopt;
    }
    return launch;
}

PrivilegedCommands::Outcome PrivilegedCommands::confirmItems() {
    Outcome outcome = Outcome::finished;
    while (!sentItems_.empty()) {
        if (confirmFirst() == Outcome::refused) outcome = Outcome::refused;
    }
    return outcome;
}

/// Waits for the answers for the oldest item.
PrivilegedCommands::Outcome PrivilegedCommands::confirmFirst() {
    const SentItem item = std::move(sentItems_.front());
    sentItems_.pop_front();
    for (const PrivilegedLaunch* launch : {&item.owner, &item.permissions}) {
        std::optional<TaskError> error;
        tasks_.finish(*launch, &error);
        if (checked(error) == Outcome::refused) return Outcome::refused;
    }
    run_.installedPaths.push_back(item.path);
    return Outcome::finished;
}

void PrivilegedCommands::removeQuarantine(const std::string& path) {
    run("/usr/bin/xattr", {"-dr", "com.apple.quarantine", path});
}

void PrivilegedCommands::runLsregister() {
    static_cast<void>(confirmItems());
    if (!run_.authorization) return;
    const Asking asking(run_);
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

#include "privileged/helper/AdministratorTools.h"

#include <optional>

#include "privileged/files/Location.h"
#include "privileged/helper/Actions.h"
#include "privileged/helper/HeldSignals.h"
#include "privileged/helper/Report.h"

namespace installer {
namespace {

/// Enough of a request to recognise it, however long it is.
std::string summary(const ToolRequestView& request) {
    constexpr std::size_t longest = 200;
    std::string text(request.tool.substr(0, longest));
    for (const std::string& argument : request.arguments) {
        text += " '" + argument.substr(0, longest) + "'";
    }
    return text;
}

bool isMissingFolder(const std::string& path) {
    return openFolder(path, LinkPolicy::trustedOnly).error() ==
           std::errc::no_such_file_or_directory;
}

}  // namespace

AdministratorTools::ExitStatus AdministratorTools::run(const ToolRequestView& request,
                                                       const CopyProgress& progress) {
    const std::optional<Command> command = allowedCommand(request, user_, folders_);
    if (!command || !isPlanned(*command)) {
        report((command ? "refused, since the run has not planned it: " : "refused: ") +
               summary(request));
        return ExitStatus::refused;
    }
    if (isDone_ && isDone_(*command)) return ExitStatus::succeeded;
    const HeldSignals held;
    const std::error_code error = performNow(*command, progress);
    if (!error) return ExitStatus::succeeded;
    report(std::string(request.tool) + ": " + command->path + ": " + error.message());
    return ExitStatus::failed;
}

void AdministratorTools::addPlanned(const PlanTexts& plan) {
    for (const std::string& text : plan.texts) {
        if (plan.kind == PlanTexts::Kind::removableNames) {
            grant_.addRemovableName(text);
        } else if (isPlainPath(text)) {
            grant_.addDestination(text);
        }
    }
}

bool AdministratorTools::isPlanned(const Command& command) const {
    switch (command.action) {
        case Action::makeFolders:
            return grant_.holds(command.path) || grant_.leadsThrough(command.path);
        case Action::setOwner:
            return grant_.holds(command.path) || madeFolders_.contains(command.path);
        case Action::remove:
            return grant_.mayRemove(command.path);
        case Action::copy:
        case Action::setMode:
        case Action::touch:
        case Action::removeQuarantine:
            return grant_.holds(command.path);
        case Action::refreshDesktopDatabase:
            return true;
    }
    return false;
}

std::error_code AdministratorTools::performNow(const Command& command,
                                               const CopyProgress& progress) {
    if (command.action == Action::refreshDesktopDatabase) {
        // The desktop database is this machine's own; what was installed is another disk's.
        if (folders_.areOnTargetVolume()) return {};
        if (refresh_) return refresh_();
    }
    const bool isNew = command.action == Action::makeFolders && isMissingFolder(command.path);
    const std::error_code error = perform(command, user_, progress);
    if (!error && isNew) madeFolders_.insert(command.path);
    return error;
}

}  // namespace installer

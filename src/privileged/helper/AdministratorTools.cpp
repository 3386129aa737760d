#include "privileged/helper/AdministratorTools.h"

#include <optional>
#include <string>
#include <system_error>

#include "privileged/helper/Actions.h"
#include "privileged/helper/HeldSignals.h"
#include "privileged/helper/Report.h"

namespace installer {
namespace {

/// Enough of a request to recognise it, however long it is.
std::string summary(const ToolRequest& request) {
    constexpr std::size_t longest = 200;
    std::string text = request.tool.substr(0, longest);
    for (const std::string& argument : request.arguments) {
        text += " '" + argument.substr(0, longest) + "'";
    }
    return text;
}

}  // namespace

AdministratorTools::ExitStatus AdministratorTools::run(const ToolRequest& request,
                                                       const CopyProgress& progress) {
    const std::optional<Command> command = allowedCommand(request, user_, folders_);
    if (!command) {
        report("refused: " + summary(request));
        return ExitStatus::refused;
    }
    if (isDone_ && isDone_(*command)) return ExitStatus::succeeded;
    const HeldSignals held;
    const std::error_code error = perform(*command, user_, progress);
    if (!error) return ExitStatus::succeeded;
    report(request.tool + ": " + command->path + ": " + error.message());
    return ExitStatus::failed;
}

}  // namespace installer

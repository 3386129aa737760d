#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include <unistd.h>

#include "privileged/helper/AdministratorTools.h"
#include "privileged/helper/CleanStart.h"
#include "privileged/helper/HelperArguments.h"
#include "privileged/helper/HelperSession.h"
#include "privileged/helper/InvokingUser.h"
#include "privileged/helper/ProtectedFolders.h"
#include "privileged/helper/Report.h"

/// The privileged helper: root's side of the installation. Reads requests from its standard input,
/// does those that its policy allows, and answers on its standard output.
int main(int count, char** words) {
    const std::optional<installer::HelperArguments> arguments = installer::helperArguments(
        std::span(words, static_cast<std::size_t>(count)).subspan(count > 0 ? 1 : 0));
    const std::optional<installer::InvokingUser> user =
        arguments ? installer::InvokingUser::whoStartedBy(arguments->startedBy) : std::nullopt;
    installer::cleanStart();
    if (::getuid() != 0 || ::geteuid() != 0) {
        installer::report("this program must be started by root; the installer does that");
        return 1;
    }
    if (!arguments) {
        installer::report("the command line is not one of the installer's");
        return 1;
    }
    if (!user) {
        installer::report("the environment does not say whom to act for");
        return 1;
    }
    installer::WriteGrant grant;
    for (const std::string& folder : arguments->folders) grant.addFolder(folder);
    installer::noteFolders(grant.folders());
    installer::AdministratorTools tools(
        *user, installer::ProtectedFolders(arguments->volume, arguments->home, user->number()),
        std::move(grant));
    return installer::HelperSession(STDIN_FILENO, STDOUT_FILENO, std::move(tools)).run();
}

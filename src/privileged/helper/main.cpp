#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include "privileged/helper/CleanStart.h"
#include "privileged/helper/DesktopDatabase.h"
#include "privileged/helper/HelperSession.h"
#include "privileged/helper/Report.h"
#include "privileged/wall/HelperArguments.h"
#include "privileged/wall/InvokingUser.h"
#include "privileged/wall/KernelWall.h"
#include "privileged/wall/ProtectedFolders.h"

namespace {

using namespace installer;

/// What the run may change, as the administrator was shown it.
WriteGrant grantOf(const std::vector<std::string>& folders) {
    WriteGrant grant;
    for (const std::string& folder : folders) grant.addFolder(folder);
    if (folders.empty()) note("changes nothing");
    for (const std::string& folder : grant.folders()) note("changes files below " + folder);
    return grant;
}

int serve(const HelperArguments& arguments, const InvokingUser& user) {
    WriteGrant grant = grantOf(arguments.folders);
    ProtectedFolders folders(arguments.volume, arguments.home, user.number());
    DesktopDatabase database;
    if (const auto reason = raiseKernelWall(grant.folders(), Devices::closed)) {
        note("the kernel keeps this process from no other folder: " + *reason);
    }
    if (const auto error =
            user.reader() == nullptr ? std::error_code() : user.reader()->takeGroups()) {
        report("the user's groups cannot be taken: " + error.message());
        return 1;
    }
    giveUpOtherRights();
    AdministratorTools tools(user, std::move(folders), std::move(grant));
    tools.setRefresh([&database] { return database.refresh(); });
    return HelperSession(STDIN_FILENO, STDOUT_FILENO, std::move(tools)).run();
}

}  // namespace

/// The privileged helper: root's side of the installation. Reads requests from its standard input,
/// does those that its policy allows, and answers on its standard output.
int main(int count, char** words) {
    const std::optional<HelperArguments> arguments = helperArguments(
        std::span(words, static_cast<std::size_t>(count)).subspan(count > 0 ? 1 : 0));
    const std::optional<InvokingUser> user =
        arguments ? InvokingUser::whoStartedBy(arguments->startedBy) : std::nullopt;
    cleanStart();
    if (::getuid() != 0 || ::geteuid() != 0) {
        report("this program must be started by root; the installer does that");
        return 1;
    }
    if (!arguments) {
        report("the command line is not one of the installer's");
        return 1;
    }
    if (!user) {
        report("the environment does not say whom to act for");
        return 1;
    }
    return serve(*arguments, *user);
}

#include "tests/faults/disk/InProcessAuthorizations.h"

#include <cstdlib>

#include <unistd.h>

#include "privileged/helper/Actions.h"
#include "privileged/helper/InvokingUser.h"
#include "privileged/helper/Policy.h"
#include "tests/faults/disk/DoneTool.h"

namespace installer::test {

class InProcessAuthorizations::InProcess : public Authorization {
  public:
    InProcess(uid_t user, ProtectedFolders folders)
        : number_(user), user_(user), folders_(std::move(folders)) {}

    bool obtain(std::uint32_t /*flags*/) override { return true; }

    PrivilegedLaunch execute(const std::string& tool,
                             const std::vector<std::string>& arguments) override {
        const std::optional<Command> command = allowedCommand({tool, arguments}, user_, folders_);
        bool succeeded = command.has_value();
        if (command && !isOfTheSystem(tool)) {
            actAs(0);
            succeeded = !perform(*command, user_, {});
            actAs(number_);
        }
        return {0, std::make_unique<DoneTool>(succeeded)};
    }

    void setProgressSink(ProgressSink* /*progress*/) override {}

  private:
    uid_t number_;
    InvokingUser user_;
    ProtectedFolders folders_;
};

std::unique_ptr<Authorization> InProcessAuthorizations::create() {
    return std::make_unique<InProcess>(user_, folders_);
}

void actAs(uid_t user) {
    if (::geteuid() == user) return;
    if (::geteuid() != 0 && ::seteuid(0) != 0) std::abort();
    if (user != 0 && ::seteuid(user) != 0) std::abort();
}

}  // namespace installer::test

#include "tests/faults/disk/InProcessAuthorizations.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include <unistd.h>

#include "privileged/helper/AdministratorTools.h"
#include "privileged/wall/InvokingUser.h"
#include "tests/faults/disk/DoneTool.h"

namespace installer::test {

class InProcessAuthorizations::InProcess : public Authorization {
  public:
    InProcess(uid_t user, ProtectedFolders folders) : number_(user), folders_(std::move(folders)) {}

    bool obtain(std::uint32_t /*flags*/) override { return true; }

    void limitTo(const WriteGrant& grant) override {
        tools_.emplace(InvokingUser(number_), folders_, grant);
    }

    PrivilegedLaunch execute(const std::string& tool,
                             const std::vector<std::string>& arguments) override {
        if (!tools_) return {0, std::make_unique<DoneTool>(false)};
        if (isOfTheSystem(tool)) return {0, std::make_unique<DoneTool>(true)};
        actAs(0);
        const auto status = tools_->run({tool, arguments}, {});
        actAs(number_);
        return {0, std::make_unique<DoneTool>(status == AdministratorTools::ExitStatus::succeeded)};
    }

    void setProgressSink(ProgressSink* /*progress*/) override {}

  private:
    uid_t number_;
    ProtectedFolders folders_;
    std::optional<AdministratorTools> tools_;
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

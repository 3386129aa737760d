#include "tests/faults/disk/ForkedHelper.h"

#include <cstdlib>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "privileged/helper/HelperSession.h"
#include "privileged/protocol/MessageStream.h"
#include "privileged/wall/InvokingUser.h"
#include "tests/faults/disk/DoneTool.h"

namespace installer::test {

class ForkedHelper::Forked : public Authorization {
  public:
    explicit Forked(int connection) : stream_(connection, connection) {}

    bool obtain(std::uint32_t /*flags*/) override {
        const auto hello = stream_.receive();
        return hello && helloVersion(*hello) == protocolVersion;
    }

    /// Each run continues with the same helper, whose folders hold whatever a run plans.
    void limitTo(const WriteGrant& grant) override {
        const auto& paths = grant.destinations();
        const PlanTexts plan{PlanTexts::Kind::destinations, {paths.begin(), paths.end()}};
        isLost_ = !stream_.send(encodedPlan(plan));
    }

    PrivilegedLaunch execute(const std::string& tool,
                             const std::vector<std::string>& arguments) override {
        const auto request = encodedRequest({tool, arguments});
        if (isOfTheSystem(tool)) return {0, std::make_unique<DoneTool>(true)};
        if (isLost_ || !request || !stream_.send(*request))
            return {authorization_status::denied, nullptr};
        while (const auto message = stream_.receive()) {
            if (const auto status = exitStatus(*message)) {
                return {0, std::make_unique<DoneTool>(*status == 0)};
            }
        }
        return {authorization_status::denied, nullptr};
    }

    void setProgressSink(ProgressSink* /*progress*/) override {}

  private:
    MessageStream stream_;
    bool isLost_ = false;
};

ForkedHelper::ForkedHelper(uid_t user, const ProtectedFolders& folders) {
    int ends[2] = {};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) std::abort();
    process_ = ::fork();
    if (process_ == 0) {
        ::close(ends[0]);
        WriteGrant grant;
        grant.addFolder("/");
        AdministratorTools tools(InvokingUser(user), folders, grant);
        ::_exit(HelperSession(ends[1], ends[1], std::move(tools)).run());
    }
    ::close(ends[1]);
    connection_ = ends[0];
}

ForkedHelper::~ForkedHelper() {
    ::close(connection_);
    ::waitpid(process_, nullptr, 0);
}

std::unique_ptr<Authorization> ForkedHelper::create() {
    return std::make_unique<Forked>(connection_);
}

}  // namespace installer::test

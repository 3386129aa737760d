#include "linux/rights/LinuxAuthorization.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/prctl.h>
#include <unistd.h>

#include "foundation/values/Paths.h"
#include "linux/rights/HelperTrust.h"
#include "linux/rights/LinkedFolders.h"
#include "linux/rights/PrivilegedHelper.h"
#include "linux/rights/RootTools.h"
#include "linux/rights/TerminalAgent.h"
#include "linux/rights/TerminalQuestion.h"

namespace installer {
namespace {

/// While this object lives, no other process of the same user can take this one's descriptors, and
/// with them the helper's connection, or read and change its memory. Root and its debuggers can.
class ClosedToOthers {
  public:
    ClosedToOthers() : before_(::prctl(PR_GET_DUMPABLE)) { ::prctl(PR_SET_DUMPABLE, 0); }
    ~ClosedToOthers() {
        if (before_ == 1) ::prctl(PR_SET_DUMPABLE, 1);
    }
    ClosedToOthers(const ClosedToOthers&) = delete;
    ClosedToOthers& operator=(const ClosedToOthers&) = delete;

  private:
    int before_;
};

class LinuxAuthorization : public Authorization {
  public:
    explicit LinuxAuthorization(AdministratorAccess access) : access_(std::move(access)) {}
    ~LinuxAuthorization() override {
        if (helper_) helper_->end();
    }
    LinuxAuthorization(const LinuxAuthorization&) = delete;
    LinuxAuthorization& operator=(const LinuxAuthorization&) = delete;

    [[nodiscard]] bool obtain(std::uint32_t flags) override;
    [[nodiscard]] AuthorizationTrouble trouble() const override { return trouble_; }
    void limitTo(const WriteGrant& grant) override;
    [[nodiscard]] bool mayAskNow() const override {
        return mayAsk(way_) && refusal_ == 0 && !helper_;
    }
    [[nodiscard]] PrivilegedLaunch execute(const std::string& tool,
                                           const std::vector<std::string>& arguments) override;
    void setProgressSink(ProgressSink* progress) override;

  private:
    [[nodiscard]] PrivilegedLaunch executeInThisProcess(const std::string& tool,
                                                        const std::vector<std::string>& arguments);
    void startHelper();
    void announce(std::string_view line) const {
        if (access_.announce) access_.announce(line);
    }

    AdministratorAccess access_;
    AdministratorMeans means_;
    AdministratorWay way_ = AdministratorWay::none;
    AuthorizationTrouble trouble_ = AuthorizationTrouble::none;
    std::optional<ClosedToOthers> closed_;
    std::shared_ptr<PrivilegedHelper> helper_;
    LinkedFolders links_{::getuid()};
    WriteGrant grant_;
    std::optional<RootTools> rootTools_;
    std::int32_t refusal_ = 0;
    ProgressSink* progress_ = nullptr;
};

bool LinuxAuthorization::obtain(std::uint32_t /*flags: the helper gives all rights or none*/) {
    means_ = access_.means();
    way_ = administratorWay(means_);
    trouble_ = AuthorizationTrouble::none;
    if (way_ == AdministratorWay::none) {
        trouble_ = AuthorizationTrouble::noWay;
        announce("There is no way to administrator rights: neither polkit nor sudo was found");
    } else if (way_ != AdministratorWay::alreadyRoot &&
               ::access(access_.helper.path.c_str(), X_OK) != 0) {
        trouble_ = AuthorizationTrouble::helperUnusable;
        announce("The privileged helper is missing or cannot be started: " +
                 (access_.helper.path.empty() ? "it is not in the bundle" : access_.helper.path));
    }
    return trouble_ == AuthorizationTrouble::none;
}

void LinuxAuthorization::limitTo(const WriteGrant& grant) {
    WriteGrant led = links_.follow(grant);
    if (led == grant_) return;
    grant_ = std::move(led);
    access_.helper.folders = grant_.folders();
    rootTools_.reset();
    if (helper_) std::exchange(helper_, nullptr)->end();
    closed_.reset();
}

PrivilegedLaunch LinuxAuthorization::execute(const std::string& tool,
                                             const std::vector<std::string>& arguments) {
    // Two commands for each of thousands of items: their paths are not taken apart in vain.
    std::vector<std::string> led;
    if (links_.any()) {
        for (const std::string& argument : arguments) led.push_back(links_.followed(argument));
    }
    const std::vector<std::string>& followed = links_.any() ? led : arguments;
    if (way_ == AdministratorWay::alreadyRoot) return executeInThisProcess(tool, followed);
    if (refusal_ == 0 && !helper_) startHelper();
    if (refusal_ != 0) return {refusal_, nullptr};
    PrivilegedLaunch launch = helper_->execute(tool, followed);
    // A lost helper is not started again: that could ask the same person a second time.
    if (helper_->isLost()) {
        refusal_ = authorization_status::denied;
        closed_.reset();
        announce("The privileged helper has ended before its work was done");
    }
    return launch;
}

PrivilegedLaunch LinuxAuthorization::executeInThisProcess(
    const std::string& tool, const std::vector<std::string>& arguments) {
    if (!rootTools_) {
        // A program that is root only for a while acts for a user who is not.
        if (::getuid() != 0 || ::geteuid() != 0) return {authorization_status::denied, nullptr};
        rootTools_.emplace(access_.helper, grant_, access_.finishedTree);
    }
    return rootTools_->execute(tool, arguments, progress_);
}

void LinuxAuthorization::startHelper() {
    if (way_ == AdministratorWay::none) {
        refusal_ = authorization_status::denied;
        return;
    }
    // Nobody is asked to let root run a program that somebody else could have put there.
    if (const auto entry = whatOthersCanChange(access_.helper.path, ::geteuid())) {
        refusal_ = authorization_status::denied;
        announce("No administrator rights are asked for, because other users can change " + *entry);
        return;
    }
    const std::vector<std::string> lines = folderLines(grant_.folders(), access_.folderWords);
    if (mayAsk(way_)) {
        announce(access_.reason);
        for (const std::string& line : lines) announce(line);
    }
    closed_.emplace();
    std::optional<TerminalQuestion> question;
    if (mayAsk(way_) && means_.hasTerminal) question.emplace();
    std::optional<TerminalAgent> agent;
    if (auto command = terminalAgentCommand(way_, means_)) {
        agent.emplace(std::move(*command), [this] {
            if (progress_ != nullptr) progress_->bytesCopied(0);
        });
    }
    PrivilegedHelper::Start start =
        PrivilegedHelper::start(helperCommand(way_, means_, access_.helper, access_.reason, lines),
                                dismissedExitStatus(way_), progress_);
    refusal_ = start.status;
    helper_ = std::move(start.helper);
    if (helper_) {
        helper_->limitTo(grant_);
    } else {
        closed_.reset();
    }
}

void LinuxAuthorization::setProgressSink(ProgressSink* progress) {
    progress_ = progress;
    if (helper_) helper_->setProgressSink(progress);
}

/// Whether this user can add to the folder, or to the nearest one above it that exists.
bool canWriteAlone(std::string folder) {
    while (folder.size() > 1 && ::access(folder.c_str(), F_OK) != 0) folder = parentPath(folder);
    return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

}  // namespace

std::unique_ptr<Authorization> LinuxAuthorizations::create() {
    return std::make_unique<LinuxAuthorization>(access_);
}

LinkRefusal LinuxAuthorizations::linkRefusal(const std::string& folder) const {
    const uid_t user = ::getuid();
    if (::geteuid() != 0 && canWriteAlone(folder)) return LinkRefusal::none;
    const HelperPlace& helper = access_.helper;
    return LinkedFolders(user).refusal(folder, ProtectedFolders(helper.volume, helper.home, user));
}

}  // namespace installer

#include "tests/support/FailingAuthorizations.h"

#include <utility>

#include "foundation/values/Paths.h"

namespace installer::test {

namespace {

/// A tool that has ended, in one way or the other.
class EndedTool : public PrivilegedTool {
  public:
    explicit EndedTool(std::int32_t status) : status_(status) {}

    void waitUntilEnded() override {}
    std::size_t readOutput(std::span<char> /*buffer*/) override { return 0; }
    std::int32_t status() const override { return status_; }
    [[nodiscard]] bool hasSucceeded() const override { return false; }

  private:
    std::int32_t status_;
};

PrivilegedLaunch ended(std::int32_t status) {
    return {0, std::make_unique<EndedTool>(status)};
}

void finish(const PrivilegedLaunch& launch) {
    if (launch.tool) launch.tool->waitUntilEnded();
}

}  // namespace

class FailingAuthorizations::Failing : public Authorization {
  public:
    Failing(std::unique_ptr<Authorization> authorization, Faults& faults)
        : authorization_(std::move(authorization)), faults_(faults) {}

    bool obtain(std::uint32_t flags) override {
        return faults_.next({"obtain"}) == nullptr && authorization_->obtain(flags);
    }

    void limitTo(const WriteGrant& grant) override { authorization_->limitTo(grant); }
    bool mayAskNow() const override { return authorization_->mayAskNow(); }

    PrivilegedLaunch execute(const std::string& tool,
                             const std::vector<std::string>& arguments) override {
        Faults::Call call = {tool};
        call.insert(call.end(), arguments.begin(), arguments.end());
        if (isLost_) {
            faults_.addLost(std::move(call));
            return {authorization_status::denied, nullptr};
        }
        const FaultPlan* plan = faults_.next(std::move(call));
        if (plan == nullptr) return authorization_->execute(tool, arguments);
        switch (plan->command) {
            case CommandFault::denied:
                return {authorization_status::denied, nullptr};
            case CommandFault::canceled:
                return {authorization_status::canceled, nullptr};
            case CommandFault::unusable:
                return {authorization_status::toolNotExecutable, nullptr};
            case CommandFault::exitStatus1:
                leaveEffect(*plan, tool, arguments);
                return ended(0);
            case CommandFault::helperDies:
                leaveEffect(*plan, tool, arguments);
                isLost_ = true;
                return ended(authorization_status::denied);
        }
        return {};
    }

    void setProgressSink(ProgressSink* progress) override {
        authorization_->setProgressSink(progress);
    }

  private:
    void leaveEffect(const FaultPlan& plan, const std::string& tool,
                     std::vector<std::string> arguments) {
        if (plan.afterEffect == AfterEffect::nothing) return;
        if (plan.afterEffect == AfterEffect::part && tool == "/bin/mkdir") {
            arguments.back() = parentPath(arguments.back());
        }
        // A helper that died may have done all of a copy before; a copy that failed did nothing.
        if (plan.command == CommandFault::exitStatus1 && tool == "/bin/cp") return;
        finish(authorization_->execute(tool, arguments));
    }

    std::unique_ptr<Authorization> authorization_;
    Faults& faults_;
    bool isLost_ = false;
};

std::unique_ptr<Authorization> FailingAuthorizations::create() {
    if (faults_.next({"create"}) != nullptr) return nullptr;
    return std::make_unique<Failing>(authorizations_.create(), faults_);
}

}  // namespace installer::test

#include "linux/rights/PrivilegedHelper.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>

namespace installer {

/// Owns its run; the helper refers to the current run only.
class PrivilegedHelper::Tool : public PrivilegedTool {
  public:
    Tool(std::shared_ptr<PrivilegedHelper> helper, std::shared_ptr<Run> run)
        : helper_(std::move(helper)), run_(std::move(run)) {}

    void waitUntilEnded() override { helper_->finish(*run_); }

    [[nodiscard]] std::size_t readOutput(std::span<char> buffer) override {
        while (run_->read == run_->output.size() && run_->state == Run::State::running) {
            helper_->handleNextMessage();
        }
        const std::size_t count = std::min(buffer.size(), run_->output.size() - run_->read);
        run_->output.copy(buffer.data(), count, run_->read);
        run_->read += count;
        return count;
    }

    [[nodiscard]] std::int32_t status() const override {
        return run_->state == Run::State::lost ? authorization_status::denied : 0;
    }

    [[nodiscard]] bool hasSucceeded() const override { return run_->exitStatus == 0U; }

  private:
    std::shared_ptr<PrivilegedHelper> helper_;
    std::shared_ptr<Run> run_;
};

PrivilegedHelper::Start PrivilegedHelper::start(SpawnRequest command, std::optional<int> dismissed,
                                                ProgressSink* progress) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
    FileDescriptor ours(ends[0]);
    FileDescriptor theirs(ends[1]);
    command.standardInput = theirs.get();
    command.standardOutput = theirs.get();
    const Result<pid_t> process = spawn(command);
    if (!process) return {};
    theirs.reset();

    // Not make_shared: the constructor is private.
    const std::shared_ptr<PrivilegedHelper> helper(
        new PrivilegedHelper(process.value(), std::move(ours), progress));
    if (helper->saidHello()) return {0, helper};
    const std::optional<int> status = helper->reap();
    const bool canceled =
        dismissed && status && WIFEXITED(*status) && WEXITSTATUS(*status) == *dismissed;
    return {canceled ? authorization_status::canceled : authorization_status::denied, nullptr};
}

bool PrivilegedHelper::saidHello() {
    const std::optional<Message> message = receive();
    return message && helloVersion(*message) == protocolVersion;
}

void PrivilegedHelper::limitTo(const WriteGrant& grant) {
    const auto encoded = [](PlanTexts::Kind kind, const auto& texts) {
        return encodedPlan({kind, {texts.begin(), texts.end()}});
    };
    const std::string plan = encoded(PlanTexts::Kind::destinations, grant.destinations()) +
                             encoded(PlanTexts::Kind::removableNames, grant.removableNames());
    if (!plan.empty() && !stream_.send(plan)) end();
}

PrivilegedLaunch PrivilegedHelper::execute(const std::string& tool,
                                           const std::vector<std::string>& arguments) {
    const std::optional<std::string> request = encodedRequest({tool, arguments});
    if (!request) return {authorization_status::toolNotExecutable, nullptr};
    if (const std::shared_ptr<Run> earlier = running_) finish(*earlier);
    if (isLost()) return {authorization_status::denied, nullptr};
    if (!stream_.send(*request)) {
        end();
        return {authorization_status::denied, nullptr};
    }
    running_ = std::make_shared<Run>();
    return {0, std::make_unique<Tool>(shared_from_this(), running_)};
}

void PrivilegedHelper::finish(Run& run) {
    while (run.state == Run::State::running) handleNextMessage();
}

std::function<void()> PrivilegedHelper::whileWaiting() const {
    if (progress_ == nullptr) return {};
    return [progress = progress_] { progress->bytesCopied(0); };
}

/// Called only during a run.
void PrivilegedHelper::handleNextMessage() {
    const std::optional<Message> message = receive();
    if (message && message->type == MessageType::output) {
        running_->output += message->body;
    } else if (const auto bytes = message ? progressBytes(*message) : std::nullopt) {
        if (progress_ != nullptr) progress_->bytesCopied(*bytes);
    } else if (const auto status = message ? exitStatus(*message) : std::nullopt) {
        running_->exitStatus = status;
        std::exchange(running_, nullptr)->state = Run::State::ended;
    } else {
        end();
    }
}

void PrivilegedHelper::end() {
    if (isLost()) return;
    if (const auto run = std::exchange(running_, nullptr)) run->state = Run::State::lost;
    reap();
}

std::optional<int> PrivilegedHelper::reap() {
    connection_.reset();
    const Result<int> status = waitForEnd(std::exchange(process_, -1), whileWaiting());
    return status ? std::optional(status.value()) : std::nullopt;
}

}  // namespace installer

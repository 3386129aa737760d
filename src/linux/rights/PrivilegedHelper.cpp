#include "linux/rights/PrivilegedHelper.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>

namespace installer {

/// Owns its run; the helper refers to those under way only.
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
    const std::optional<std::string> request = encodedRequest(tool, arguments);
    if (!request) return {authorization_status::toolNotExecutable, nullptr};
    while (underWay_.size() >= mostUnderWay) handleNextMessage();
    if (isLost()) return {authorization_status::denied, nullptr};
    underWay_.push_back(std::make_shared<Run>());
    const std::shared_ptr<Run> run = underWay_.back();
    unsent_ += *request;
    ++unsentCount_;
    // A helper with nothing to do begins at once.
    send(underWay_.size() == 1 ? 0 : mostUnsent - 1);
    if (isLost()) return {authorization_status::denied, nullptr};
    return {0, std::make_unique<Tool>(shared_from_this(), run)};
}

/// Sends all requests if there are more than that.
void PrivilegedHelper::send(std::size_t mostKept) {
    if (unsentCount_ <= mostKept || isLost()) return;
    unsentCount_ = 0;
    if (!stream_.send(std::exchange(unsent_, std::string()))) end();
}

void PrivilegedHelper::finish(Run& run) {
    while (run.state == Run::State::running) handleNextMessage();
}

std::function<void()> PrivilegedHelper::whileWaiting() const {
    if (progress_ == nullptr) return {};
    return [progress = progress_] { progress->bytesCopied(0); };
}

/// Called only while some tool is under way.
void PrivilegedHelper::handleNextMessage() {
    send(0);
    if (isLost()) return;
    const std::optional<Message> message = receive();
    if (message && message->type == MessageType::output) {
        underWay_.front()->output += message->body;
    } else if (const auto bytes = message ? progressBytes(*message) : std::nullopt) {
        if (progress_ != nullptr) progress_->bytesCopied(*bytes);
    } else if (const auto status = message ? exitStatus(*message) : std::nullopt) {
        underWay_.front()->exitStatus = status;
        underWay_.front()->state = Run::State::ended;
        underWay_.pop_front();
    } else {
        end();
    }
}

void PrivilegedHelper::end() {
    if (isLost()) return;
    static_cast<void>(stream_.send(unsent_));
    unsent_.clear();
    for (const auto& run : std::exchange(underWay_, {})) run->state = Run::State::lost;
    reap();
}

std::optional<int> PrivilegedHelper::reap() {
    connection_.reset();
    const Result<int> status = waitForEnd(std::exchange(process_, -1), whileWaiting());
    return status ? std::optional(status.value()) : std::nullopt;
}

}  // namespace installer

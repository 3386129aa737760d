#include "privileged/helper/HelperSession.h"

#include <optional>
#include <string>
#include <utility>

#include "privileged/helper/Report.h"

namespace installer {
namespace {

constexpr std::chrono::milliseconds progressInterval(50);

/// The peer goes on with what it is told meanwhile.
constexpr std::size_t mostAnswers = 16;

}  // namespace

int HelperSession::run() {
    if (!stream_.send(encodedHello())) return 1;
    while (const std::optional<Message> message = nextMessage()) {
        if (takePlan(*message)) continue;
        const std::optional<ToolRequest> request = toolRequest(*message);
        if (!request) {
            static_cast<void>(sendAnswers());
            report("what came is no request");
            return 1;
        }
        if (!serve(*request)) return 0;
    }
    if (peerIsGone_ || stream_.ending() == MessageStream::Ending::closed) return 0;
    report("what came is no message");
    return 1;
}

/// Nothing that is done stays unanswered while this process waits.
std::optional<Message> HelperSession::nextMessage() {
    if (std::optional<Message> message = stream_.received()) return message;
    return sendAnswers() ? stream_.receive() : std::nullopt;
}

/// The plan is complete before anything is done: what is asked for later cannot widen it.
bool HelperSession::takePlan(const Message& message) {
    if (hasServed_ || planMessages_ == message_limits::planMessages) return false;
    const std::optional<PlanTexts> plan = planTexts(message);
    if (!plan) return false;
    ++planMessages_;
    tools_.addPlanned(*plan);
    return true;
}

bool HelperSession::serve(const ToolRequest& request) {
    hasServed_ = true;
    if (!held_) held_.emplace();
    addEnded(tools_.run(request, [this](std::uint64_t bytes) { copied(bytes); }));
    const bool areOld = std::chrono::steady_clock::now() - firstAnswered_ >= progressInterval;
    const bool isTimeToSend = areOld || answerCount_ >= mostAnswers || HeldSignals::isOneWaiting();
    return !isTimeToSend || sendAnswers();
}

void HelperSession::copied(std::uint64_t bytes) {
    unreported_ += bytes;
    const auto now = std::chrono::steady_clock::now();
    if (now - lastProgress_ < progressInterval) return;
    // A peer that does not read, or is gone, never holds up a copy.
    if (!stream_.canSend()) return;
    // Messages are about the first request that has no answer yet.
    answerCount_ = 0;
    const std::string before = std::exchange(answers_, std::string());
    if (!stream_.send(before + encodedProgress(unreported_))) return;
    unreported_ = 0;
    lastProgress_ = now;
}

void HelperSession::addEnded(AdministratorTools::ExitStatus status) {
    if (answers_.empty()) firstAnswered_ = std::chrono::steady_clock::now();
    if (const std::uint64_t rest = std::exchange(unreported_, 0); rest > 0) {
        answers_ += encodedProgress(rest);
    }
    answers_ += encodedEnded(static_cast<std::uint32_t>(status));
    ++answerCount_;
}

bool HelperSession::sendAnswers() {
    if (answers_.empty()) return true;
    // The actions are done; a signal may interrupt the wait for a peer that does not read.
    if (!stream_.canSend()) held_.reset();
    answerCount_ = 0;
    peerIsGone_ = !stream_.send(std::exchange(answers_, std::string()));
    held_.reset();
    return !peerIsGone_;
}

}  // namespace installer

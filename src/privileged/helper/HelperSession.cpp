#include "privileged/helper/HelperSession.h"

#include <optional>
#include <string>
#include <utility>

#include "privileged/helper/HeldSignals.h"
#include "privileged/helper/Report.h"

namespace installer {
namespace {

constexpr std::chrono::milliseconds progressInterval(50);

}  // namespace

int HelperSession::run() {
    if (!stream_.send(encodedHello())) return 1;
    while (const std::optional<Message> message = stream_.receive()) {
        const std::optional<ToolRequest> request = toolRequest(*message);
        if (!request) {
            report("what came is no request");
            return 1;
        }
        if (!serve(*request)) return 0;
    }
    if (stream_.ending() == MessageStream::Ending::closed) return 0;
    report("what came is no message");
    return 1;
}

bool HelperSession::serve(const ToolRequest& request) {
    std::optional<HeldSignals> held(std::in_place);
    const ExitStatus status = tools_.run(request, [this](std::uint64_t bytes) { copied(bytes); });
    // The action is done; a signal may interrupt the wait for a peer that does not read.
    if (!stream_.canSend()) held.reset();
    return sendEnded(status);
}

void HelperSession::copied(std::uint64_t bytes) {
    unreported_ += bytes;
    const auto now = std::chrono::steady_clock::now();
    if (now - lastProgress_ < progressInterval) return;
    // A peer that does not read, or is gone, never holds up a copy.
    if (!stream_.canSend() || !stream_.send(encodedProgress(unreported_))) return;
    unreported_ = 0;
    lastProgress_ = now;
}

bool HelperSession::sendEnded(ExitStatus status) {
    std::string messages;
    if (const std::uint64_t rest = std::exchange(unreported_, 0); rest > 0) {
        messages = encodedProgress(rest);
    }
    messages += encodedEnded(static_cast<std::uint32_t>(status));
    return stream_.send(messages);
}

}  // namespace installer

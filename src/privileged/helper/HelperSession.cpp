#include "privileged/helper/HelperSession.h"

#include <optional>
#include <string>
#include <utility>

#include "privileged/helper/Actions.h"
#include "privileged/helper/HeldSignals.h"
#include "privileged/helper/Policy.h"
#include "privileged/helper/Report.h"

namespace installer {
namespace {

constexpr std::chrono::milliseconds progressInterval(50);

/// Enough of a request to recognise it, however long it is.
std::string summary(const ToolRequest& request) {
    constexpr std::size_t longest = 200;
    std::string text = request.tool.substr(0, longest);
    for (const std::string& argument : request.arguments) {
        text += " '" + argument.substr(0, longest) + "'";
    }
    return text;
}

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
    const ExitStatus status = answer(request);
    // The action is done; a signal may interrupt the wait for a peer that does not read.
    if (!stream_.canSend()) held.reset();
    return sendEnded(status);
}

HelperSession::ExitStatus HelperSession::answer(const ToolRequest& request) {
    const std::optional<Command> command = allowedCommand(request, user_, folders_);
    if (!command) {
        report("refused: " + summary(request));
        return refused;
    }
    // The desktop database is this machine's own; what was installed is another disk's.
    if (command->action == Action::refreshDesktopDatabase && folders_.areOnTargetVolume()) {
        return succeeded;
    }
    const std::error_code error =
        perform(*command, user_, [this](std::uint64_t bytes) { copied(bytes); });
    if (!error) return succeeded;
    report(request.tool + ": " + command->path + ": " + error.message());
    return failed;
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
    messages += encodedEnded(status);
    return stream_.send(messages);
}

}  // namespace installer

// What the privileged helper makes of the bytes that come from its peer: the messages, the policy
// and the session, all but the deeds themselves. Input: the stream; the policy is asked about the
// same bytes as a request's texts, too. `perform` and `report` are replaced here, and the
// real ones are not linked: nothing that is asked for is done.

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "privileged/helper/Actions.h"
#include "privileged/helper/HelperSession.h"
#include "privileged/helper/Report.h"
#include "privileged/protocol/Message.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/wall/Policy.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using namespace installer;
using fuzz::require;

constexpr std::size_t longestInput = 32768;  // fits into the buffer of a pair of sockets
constexpr uid_t user = 0;                    // one that every system has a name for

std::vector<std::string> performed;

bool namesOnePlace(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) return false;
    const std::vector<std::string> names = split(std::string_view(path).substr(1), '/');
    return std::ranges::none_of(
        names, [](const std::string& name) { return name.empty() || name == "." || name == ".."; });
}

bool isArgument(const ToolRequest& request, const std::string& text) {
    return std::ranges::find(request.arguments, text) != request.arguments.end();
}

void checkCommand(const Command& command) {
    if (command.action == Action::refreshDesktopDatabase) {
        require(command.path.empty() && command.source.empty());
        return;
    }
    require(namesOnePlace(command.path));
    require((command.action == Action::copy) == namesOnePlace(command.source));
    constexpr std::array<mode_t, 4> modes = {0, 0775, 0664, 0644};
    require(std::ranges::find(modes, command.mode) != modes.end());
}

void checkRequest(const ToolRequest& request) {
    InvokingUser invoking(user);
    const std::optional<Command> command = allowedCommand(request, invoking, ProtectedFolders());
    if (!command) return;
    checkCommand(*command);
    require(command->path.empty() || isArgument(request, command->path));
    require(command->source.empty() || isArgument(request, command->source));
    ToolRequest longer = request;
    longer.arguments.emplace_back("/more");
    ToolRequest shorter = request;
    shorter.arguments.pop_back();
    ToolRequest other = request;
    other.tool += '2';
    for (const ToolRequest& changed : {longer, shorter, other}) {
        require(!allowedCommand(changed, invoking, ProtectedFolders()));
    }
}

std::optional<std::string> encodedAgain(const Message& message) {
    if (const auto version = helloVersion(message)) {
        return *version == protocolVersion ? std::optional(encodedHello()) : std::nullopt;
    }
    if (const auto request = toolRequest(message)) return encodedRequest(*request);
    if (const auto bytes = progressBytes(message)) return encodedProgress(*bytes);
    if (const auto status = exitStatus(message)) return encodedEnded(*status);
    if (message.type == MessageType::output) return encodedOutput(message.body);
    if (const auto plan = planTexts(message); plan && !plan->texts.empty()) {
        return encodedPlan(*plan);
    }
    return std::nullopt;
}

struct Decoded {
    std::vector<Message> messages;
    MessageDecoder::State end = MessageDecoder::State::incomplete;
    bool atBoundary = false;
};

Decoded decoded(std::string_view stream, std::size_t piece) {
    Decoded result;
    MessageDecoder decoder;
    for (;;) {
        Message message;
        result.end = decoder.next(message);
        if (result.end == MessageDecoder::State::message) {
            result.messages.push_back(std::move(message));
        } else if (result.end == MessageDecoder::State::malformed || stream.empty()) {
            break;
        } else {
            decoder.append(stream.substr(0, piece));
            stream.remove_prefix(std::min(piece, stream.size()));
        }
    }
    result.atBoundary = decoder.atBoundary();
    return result;
}

void checkMessages(const Decoded& whole, std::string_view stream) {
    for (const Message& message : whole.messages) {
        const std::string_view bytes =
            stream.substr(0, message_limits::headSize + message.body.size());
        stream.remove_prefix(bytes.size());
        if (const auto again = encodedAgain(message)) require(*again == bytes);
        require(toolRequest(message).has_value() <= (message.type == MessageType::request));
        if (const auto request = toolRequest(message)) checkRequest(*request);
    }
}

/// The input as the texts of a request: a fuzzer finds its way past lengths only slowly.
ToolRequest requestOf(std::string_view texts) {
    std::vector<std::string> pieces = split(texts, fuzz::separator);
    ToolRequest request;
    request.tool = std::move(pieces.front());
    request.arguments.assign(pieces.begin() + 1, pieces.end());
    return request;
}

void checkTexts(std::string_view texts) {
    const ToolRequest request = requestOf(texts);
    checkRequest(request);
    const std::optional<std::string> encoded = encodedRequest(request);
    if (!encoded) return;
    const Decoded whole = decoded(*encoded, encoded->size());
    require(whole.messages.size() == 1 && whole.atBoundary);
    require(toolRequest(whole.messages.front()) == request);
}

void checkPieces(const Decoded& whole, std::string_view stream) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{13}}) {
        const Decoded pieces = decoded(stream, piece);
        require(pieces.messages.size() == whole.messages.size() && pieces.end == whole.end);
        for (std::size_t index = 0; index < pieces.messages.size(); ++index) {
            require(pieces.messages[index].type == whole.messages[index].type);
            require(pieces.messages[index].body == whole.messages[index].body);
        }
    }
}

AdministratorTools toolsBelow(const char* folder) {
    WriteGrant grant;
    grant.addFolder(folder);
    return {InvokingUser(user), ProtectedFolders(), grant};
}

void addTo(WriteGrant& grant, const PlanTexts& plan) {
    for (const std::string& text : plan.texts) {
        if (plan.kind == PlanTexts::Kind::removableNames) {
            grant.addRemovableName(text);
        } else if (namesOnePlace(text)) {
            grant.addDestination(text);
        }
    }
}

/// What the plan allows at the most: an owner is also given to a folder that was made before.
bool isPlanned(const Command& command, const WriteGrant& grant,
               std::vector<std::string>& madeFolders) {
    const std::string& path = command.path;
    if (command.action == Action::refreshDesktopDatabase || grant.holds(path)) return true;
    if (command.action == Action::remove) return grant.mayRemove(path);
    if (command.action == Action::makeFolders) madeFolders.push_back(path);
    const bool isMade = std::ranges::find(madeFolders, path) != madeFolders.end();
    return isMade && grant.leadsThrough(path) &&
           (command.action == Action::makeFolders || command.action == Action::setOwner);
}

/// What the session writes and how it ends, the stream being all that ever comes.
std::pair<std::string, int> sessionOver(std::string_view stream) {
    std::array<int, 2> ends{};
    require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0);
    const FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    const FileDescriptor answers(::memfd_create("answers", MFD_CLOEXEC));
    require(::send(ours.get(), stream.data(), stream.size(), MSG_NOSIGNAL) ==
            static_cast<ssize_t>(stream.size()));
    require(::shutdown(ours.get(), SHUT_WR) == 0);
    HelperSession session(theirs.get(), answers.get(), toolsBelow("/"));
    const int status = session.run();
    std::string written(static_cast<std::size_t>(::lseek(answers.get(), 0, SEEK_END)), '\0');
    require(::pread(answers.get(), written.data(), written.size(), 0) ==
            static_cast<ssize_t>(written.size()));
    return {written, status};
}

void checkSession(const Decoded& asked, std::string_view stream) {
    performed.clear();
    const auto [bytes, status] = sessionOver(stream);
    const Decoded answers = decoded(bytes, bytes.size());
    require(answers.atBoundary && !answers.messages.empty());
    require(helloVersion(answers.messages.front()) == protocolVersion);
    std::vector<std::uint32_t> statuses;
    for (const Message& answer : answers.messages) {
        if (const auto ended = exitStatus(answer)) statuses.push_back(*ended);
    }
    std::size_t taken = 0;
    std::size_t answered = 0;
    std::size_t allowed = 0;
    InvokingUser invoking(user);
    WriteGrant grant;
    grant.addFolder("/");
    std::vector<std::string> madeFolders;
    for (const Message& message : asked.messages) {
        const bool isInTime = answered == 0 && taken < message_limits::planMessages;
        if (const auto plan = isInTime ? planTexts(message) : std::nullopt) {
            addTo(grant, *plan);
            ++taken;
            continue;
        }
        const std::optional<ToolRequest> request = toolRequest(message);
        if (!request) break;
        ++taken;
        const std::optional<Command> command =
            allowedCommand(*request, invoking, ProtectedFolders());
        require(answered < statuses.size());
        const bool isRefused = statuses[answered++] == 126;
        require(isRefused || command);
        if (!isRefused) {
            require(isPlanned(*command, grant, madeFolders));
            require(performed.at(allowed++) == command->path);
        }
    }
    require(answered == statuses.size() && allowed == performed.size());
    const bool endsWell = taken == asked.messages.size() && asked.atBoundary;
    require((status == 0) == endsWell);
}

}  // namespace

std::error_code installer::perform(const Command& command, const InvokingUser&,
                                   const CopyProgress& progress) {
    checkCommand(command);
    performed.push_back(command.path);
    progress(command.path.size());
    return command.path.size() % 2 == 0 ? std::error_code()
                                        : std::make_error_code(std::errc::io_error);
}

void installer::report(std::string_view line) {
    require(!line.empty());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > longestInput) return 0;
    const std::string_view stream = fuzz::textOf(data, size);
    const Decoded whole = decoded(stream, std::max<std::size_t>(size, 1));
    checkMessages(whole, stream);
    checkPieces(whole, stream);
    checkSession(whole, stream);
    checkTexts(stream);
    return 0;
}

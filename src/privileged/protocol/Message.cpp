#include "privileged/protocol/Message.h"

#include <utility>

namespace installer {
namespace {

void appendNumber(std::string& bytes, std::uint64_t number, std::size_t size) {
    for (std::size_t index = 0; index < size; ++index) {
        bytes += static_cast<char>((number >> (8 * index)) & 0xffU);
    }
}

/// Reads a body from front to back; nullopt as soon as it is too short.
class BodyReader {
  public:
    explicit BodyReader(std::string_view body) : rest_(body) {}

    std::optional<std::string_view> bytes(std::size_t size) {
        if (size > rest_.size()) return std::nullopt;
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }

    std::optional<std::uint64_t> number(std::size_t size) {
        const std::optional<std::string_view> taken = bytes(size);
        if (!taken) return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t index = 0; index < size; ++index) {
            value |= std::uint64_t{static_cast<unsigned char>((*taken)[index])} << (8 * index);
        }
        return value;
    }

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

std::string encoded(MessageType type, std::string_view body) {
    std::string bytes;
    bytes.reserve(message_limits::headSize + body.size());
    appendNumber(bytes, static_cast<std::uint32_t>(type), 4);
    appendNumber(bytes, body.size(), 4);
    bytes += body;
    return bytes;
}

std::string encodedNumber(MessageType type, std::uint64_t number, std::size_t size) {
    std::string body;
    appendNumber(body, number, size);
    return encoded(type, body);
}

std::optional<std::uint64_t> soleNumber(const Message& message, MessageType type,
                                        std::size_t size) {
    if (message.type != type || message.body.size() != size) return std::nullopt;
    return BodyReader(message.body).number(size);
}

std::optional<std::uint32_t> soleNumber32(const Message& message, MessageType type) {
    const std::optional<std::uint64_t> number = soleNumber(message, type, 4);
    if (!number) return std::nullopt;
    return static_cast<std::uint32_t>(*number);
}

bool isKnown(std::uint64_t type) {
    return type >= static_cast<std::uint32_t>(MessageType::hello) &&
           type <= static_cast<std::uint32_t>(MessageType::plan);
}

void appendText(std::string& body, std::string_view text) {
    appendNumber(body, text.size(), 4);
    body += text;
}

/// All texts from there to the body's end, or exactly `count` of them.
std::optional<std::vector<std::string>> textsOf(BodyReader& body,
                                                std::optional<std::uint64_t> count) {
    std::vector<std::string> texts;
    while (count ? texts.size() < *count : !body.atEnd()) {
        const std::optional<std::uint64_t> length = body.number(4);
        const std::optional<std::string_view> text = length ? body.bytes(*length) : std::nullopt;
        if (!text) return std::nullopt;
        texts.emplace_back(*text);
    }
    if (!body.atEnd()) return std::nullopt;
    return texts;
}

}  // namespace

std::string encodedHello() {
    return encodedNumber(MessageType::hello, protocolVersion, 4);
}

std::optional<std::string> encodedRequest(const ToolRequest& request) {
    return encodedRequest(request.tool, request.arguments);
}

std::optional<std::string> encodedRequest(std::string_view tool,
                                          std::span<const std::string> arguments) {
    if (arguments.size() >= message_limits::textCount) return std::nullopt;
    std::string body;
    appendNumber(body, arguments.size() + 1, 4);
    const auto append = [&body](std::string_view text) {
        appendText(body, text);
        return body.size() <= message_limits::bodySize;
    };
    if (!append(tool)) return std::nullopt;
    for (const std::string& argument : arguments) {
        if (!append(argument)) return std::nullopt;
    }
    return encoded(MessageType::request, body);
}

std::string encodedProgress(std::uint64_t bytes) {
    return encodedNumber(MessageType::progress, bytes, 8);
}

std::string encodedOutput(std::string_view bytes) {
    return encoded(MessageType::output, bytes.substr(0, message_limits::bodySize));
}

std::string encodedEnded(std::uint32_t exitStatus) {
    return encodedNumber(MessageType::ended, exitStatus, 4);
}

std::string encodedPlan(const PlanTexts& plan) {
    std::string messages;
    std::string body;
    const auto begin = [&] {
        body.clear();
        appendNumber(body, static_cast<std::uint32_t>(plan.kind), 4);
    };
    begin();
    const std::size_t headSize = body.size();
    for (const std::string& text : plan.texts) {
        const std::size_t size = 4 + text.size();
        if (headSize + size > message_limits::bodySize) continue;
        if (body.size() + size > message_limits::bodySize) {
            messages += encoded(MessageType::plan, body);
            begin();
        }
        appendText(body, text);
    }
    if (body.size() > headSize) messages += encoded(MessageType::plan, body);
    return messages;
}

std::optional<std::uint32_t> helloVersion(const Message& message) {
    return soleNumber32(message, MessageType::hello);
}

std::optional<ToolRequest> toolRequest(const Message& message) {
    if (message.type != MessageType::request) return std::nullopt;
    BodyReader body(message.body);
    const std::optional<std::uint64_t> count = body.number(4);
    if (!count || *count == 0 || *count > message_limits::textCount) return std::nullopt;
    std::optional<std::vector<std::string>> texts = textsOf(body, count);
    if (!texts) return std::nullopt;
    ToolRequest request;
    request.tool = std::move(texts->front());
    request.arguments.assign(std::make_move_iterator(texts->begin() + 1),
                             std::make_move_iterator(texts->end()));
    return request;
}

std::optional<std::uint64_t> progressBytes(const Message& message) {
    return soleNumber(message, MessageType::progress, 8);
}

std::optional<std::uint32_t> exitStatus(const Message& message) {
    return soleNumber32(message, MessageType::ended);
}

std::optional<PlanTexts> planTexts(const Message& message) {
    if (message.type != MessageType::plan) return std::nullopt;
    BodyReader body(message.body);
    const std::optional<std::uint64_t> kind = body.number(4);
    constexpr auto last = static_cast<std::uint32_t>(PlanTexts::Kind::removableNames);
    if (!kind || *kind < 1 || *kind > last) return std::nullopt;
    std::optional<std::vector<std::string>> texts = textsOf(body, std::nullopt);
    if (!texts) return std::nullopt;
    return PlanTexts{static_cast<PlanTexts::Kind>(*kind), *std::move(texts)};
}

void MessageDecoder::append(std::string_view bytes) {
    bytes_.erase(0, start_);
    start_ = 0;
    bytes_ += bytes;
}

MessageDecoder::State MessageDecoder::next(Message& message) {
    BodyReader head(std::string_view(bytes_).substr(start_));
    const std::optional<std::uint64_t> type = head.number(4);
    const std::optional<std::uint64_t> length = head.number(4);
    if ((type && !isKnown(*type)) || (length && *length > message_limits::bodySize)) {
        return State::malformed;
    }
    const std::optional<std::string_view> body = length ? head.bytes(*length) : std::nullopt;
    if (!type || !body) return State::incomplete;
    message.type = static_cast<MessageType>(*type);
    message.body = *body;
    start_ += message_limits::headSize + message.body.size();
    return State::message;
}

}  // namespace installer

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace installer {

// The messages between the installer and its privileged helper. Each is a head of eight bytes (its
// type and the length of its body, both 32 bits with the lowest byte first) and the body:
//
//   hello     helper -> installer   version (32 bits): the helper runs as root and listens
//   request   installer -> helper   count (32 bits), then each text's length (32 bits) and bytes;
//                                   the first text is the tool, the others are its arguments
//   progress  helper -> installer   bytes copied since the last such message (64 bits)
//   output    helper -> installer   bytes of the tool's standard output
//   ended     helper -> installer   the tool's exit status (32 bits)
//   plan      installer -> helper   what the texts are (32 bits, `PlanTexts`), then the texts like
//                                   those of a request, but any number of them
//
// The plan comes before the first request, in up to 1024 messages, and is not answered. A
// request is answered by any number of progress and output messages and one ended message.

enum class MessageType : std::uint32_t { hello = 1, request, progress, output, ended, plan };

struct Message {
    MessageType type = MessageType::hello;
    std::string body;
};

namespace message_limits {
inline constexpr std::size_t headSize = 8;
inline constexpr std::size_t bodySize = 65536;
inline constexpr std::size_t textCount = 16;
inline constexpr std::size_t planMessages = 1024;
}  // namespace message_limits

inline constexpr std::uint32_t protocolVersion = 2;

/// One run of a tool. Texts may hold any byte.
struct ToolRequest {
    std::string tool;
    std::vector<std::string> arguments;
    friend bool operator==(const ToolRequest&, const ToolRequest&) = default;
};

/// A run of a tool whose texts somebody else holds.
struct ToolRequestView {
    std::string_view tool;
    std::span<const std::string> arguments;

    ToolRequestView(std::string_view itsTool, std::span<const std::string> itsArguments)
        : tool(itsTool), arguments(itsArguments) {}
    ToolRequestView(const ToolRequest& request)
        : tool(request.tool), arguments(request.arguments) {}
};

/// A part of what the run has planned.
struct PlanTexts {
    enum class Kind : std::uint32_t {
        destinations = 1,  ///< paths of the items that the run may replace
        removableNames,    ///< names of entries that the run may remove anywhere below its folders
    };
    Kind kind = Kind::destinations;
    std::vector<std::string> texts;
    friend bool operator==(const PlanTexts&, const PlanTexts&) = default;
};

// Whole messages, ready to be written.
[[nodiscard]] std::string encodedHello();
/// nullopt if the texts are more, or longer, than a message takes.
[[nodiscard]] std::optional<std::string> encodedRequest(std::string_view tool,
                                                        std::span<const std::string> arguments);
[[nodiscard]] std::optional<std::string> encodedRequest(const ToolRequest& request);
[[nodiscard]] std::string encodedProgress(std::uint64_t bytes);
/// At most `message_limits::bodySize` bytes; what is beyond them is left away.
[[nodiscard]] std::string encodedOutput(std::string_view bytes);
[[nodiscard]] std::string encodedEnded(std::uint32_t exitStatus);
/// As many messages as the texts need. A text that is too long for a message is left away.
[[nodiscard]] std::string encodedPlan(const PlanTexts& plan);

// What a message says; nullopt if it has another type or its body is not exactly as described.
[[nodiscard]] std::optional<std::uint32_t> helloVersion(const Message& message);
[[nodiscard]] std::optional<ToolRequest> toolRequest(const Message& message);
[[nodiscard]] std::optional<std::uint64_t> progressBytes(const Message& message);
[[nodiscard]] std::optional<std::uint32_t> exitStatus(const Message& message);
[[nodiscard]] std::optional<PlanTexts> planTexts(const Message& message);

/// Takes a stream of bytes apart into messages.
class MessageDecoder {
  public:
    enum class State {
        message,     ///< a whole message was taken from the stream
        incomplete,  ///< more bytes are needed
        malformed,   ///< no message begins like this; the stream cannot be used any more
    };

    void append(std::string_view bytes);

    /// The next message into `message`, when it is whole.
    [[nodiscard]] State next(Message& message);

    /// True between two messages: nothing of a next one has come yet.
    [[nodiscard]] bool atBoundary() const { return start_ == bytes_.size(); }

  private:
    std::string bytes_;
    std::size_t start_ = 0;
};

}  // namespace installer

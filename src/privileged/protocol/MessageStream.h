#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "privileged/protocol/Message.h"

namespace installer {

/// Messages over a pair of descriptors that the caller owns: one write per message, reads
/// through a buffer. Interrupted calls are made again, and descriptors that do not block are waited
/// for.
class MessageStream {
  public:
    enum class Ending {
        none,       ///< still in use
        closed,     ///< the peer closed its end between two messages
        malformed,  ///< what came is no message, or ended in the middle of one
        failed,     ///< reading failed
    };

    MessageStream(int input, int output) : input_(input), output_(output) {}

    /// Writes a whole message. False when the peer is gone; no signal is raised by a socket.
    [[nodiscard]] bool send(std::string_view encodedMessage);

    /// Waits for the next message; nullopt if there will be no more; `ending` says why. Calls
    /// `whileWaiting`, when one is given, several times a second until something comes.
    [[nodiscard]] std::optional<Message> receive(const std::function<void()>& whileWaiting = {});
    [[nodiscard]] Ending ending() const { return ending_; }

    /// The next message if it was read together with one before it; waits for nothing.
    [[nodiscard]] std::optional<Message> received();

    /// Whether a small message could be written now without waiting for the peer to read.
    [[nodiscard]] bool canSend() const;

  private:
    int input_;
    int output_;
    MessageDecoder decoder_;
    Ending ending_ = Ending::none;
};

}  // namespace installer

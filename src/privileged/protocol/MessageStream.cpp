#include "privileged/protocol/MessageStream.h"

#include <array>
#include <cerrno>
#include <span>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "privileged/system/AwaitReadable.h"

namespace installer {
namespace {

/// A write that raises no signal where the descriptor is a socket; a helper that was given a pipe
/// ignores the signal.
ssize_t writeSome(int descriptor, std::string_view bytes) {
    const ssize_t sent = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent >= 0 || errno != ENOTSOCK) return sent;
    return ::write(descriptor, bytes.data(), bytes.size());
}

/// Until the descriptor is ready for that event, at its end or broken, or a signal has come: the
/// caller tries again. Its other users may have made it one that does not block: sudo with output
/// logging does.
void awaitReady(int descriptor, short event) {
    pollfd polled{descriptor, event, 0};
    static_cast<void>(::poll(&polled, 1, -1));
}

ssize_t readSome(int descriptor, std::span<char> buffer,
                 const std::function<void()>& whileWaiting) {
    if (whileWaiting) awaitReadable(descriptor, whileWaiting);
    return ::read(descriptor, buffer.data(), buffer.size());
}

}  // namespace

bool MessageStream::send(std::string_view encodedMessage) {
    while (!encodedMessage.empty()) {
        const ssize_t written = writeSome(output_, encodedMessage);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0 && errno == EAGAIN) {
            awaitReady(output_, POLLOUT);
            continue;
        }
        if (written < 0) return false;
        encodedMessage.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<Message> MessageStream::received() {
    Message message;
    if (ending_ != Ending::none) return std::nullopt;
    const MessageDecoder::State state = decoder_.next(message);
    if (state == MessageDecoder::State::message) return message;
    if (state == MessageDecoder::State::malformed) ending_ = Ending::malformed;
    return std::nullopt;
}

std::optional<Message> MessageStream::receive(const std::function<void()>& whileWaiting) {
    for (;;) {
        if (std::optional<Message> message = received()) return message;
        if (ending_ != Ending::none) return std::nullopt;
        std::array<char, 16384> buffer;
        const ssize_t count = readSome(input_, buffer, whileWaiting);
        if (count > 0) {
            decoder_.append({buffer.data(), static_cast<std::size_t>(count)});
        } else if (count == 0) {
            ending_ = decoder_.atBoundary() ? Ending::closed : Ending::malformed;
        } else if (errno == EAGAIN) {
            awaitReady(input_, POLLIN);
        } else if (errno != EINTR) {
            // A peer that dies with unread messages resets the connection.
            ending_ = errno == ECONNRESET ? Ending::closed : Ending::failed;
        }
    }
}

bool MessageStream::canSend() const {
    pollfd polled{output_, POLLOUT, 0};
    return ::poll(&polled, 1, 0) > 0 && (polled.revents & POLLOUT) != 0;
}

}  // namespace installer

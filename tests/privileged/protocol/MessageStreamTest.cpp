#include <array>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "privileged/protocol/MessageStream.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/privileged/system/SignalsThatInterrupt.h"

namespace installer::test {
namespace {

using Ending = MessageStream::Ending;

struct Connection {
    Connection() {
        std::array<int, 2> ends = {};
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) std::abort();
        own.reset(ends[0]);
        peer.reset(ends[1]);
    }
    void sendFromPeer(std::string_view bytes) const {
        EXPECT_EQ(write(peer.get(), bytes.data(), bytes.size()),
                  static_cast<ssize_t>(bytes.size()));
    }
    void blockNothing() const {
        for (const auto* end : {&own, &peer}) fcntl(end->get(), F_SETFL, O_NONBLOCK);
    }
    FileDescriptor own;
    FileDescriptor peer;
};

TEST(MessageStream, GivesTheMessagesThatCameTogetherOneByOne) {
    const Connection connection;
    MessageStream stream(connection.own.get(), connection.own.get());
    connection.sendFromPeer(encodedHello() + encodedEnded(3));
    EXPECT_EQ(helloVersion(stream.receive().value()), protocolVersion);
    EXPECT_EQ(exitStatus(stream.receive().value()), 3U);
    EXPECT_EQ(stream.ending(), Ending::none);
}

TEST(MessageStream, IsClosedBetweenTwoMessagesAndMalformedWithinOne) {
    const std::string message = encodedEnded(3);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, message.size() - 1}) {
        Connection connection;
        MessageStream stream(connection.own.get(), connection.own.get());
        connection.sendFromPeer(message + message.substr(0, size));
        connection.peer.reset();
        EXPECT_TRUE(stream.receive());
        EXPECT_FALSE(stream.receive());
        EXPECT_EQ(stream.ending(), size == 0 ? Ending::closed : Ending::malformed) << size;
    }
}

TEST(MessageStream, IsMalformedForGoodOnceWhatCameIsNoMessage) {
    const Connection connection;
    MessageStream stream(connection.own.get(), connection.own.get());
    connection.sendFromPeer("no message");
    EXPECT_FALSE(stream.receive());
    connection.sendFromPeer(encodedHello());
    EXPECT_FALSE(stream.receive());
    EXPECT_EQ(stream.ending(), Ending::malformed);
}

TEST(MessageStream, IsClosedByAPeerThatDiesWithoutReadingItsMessages) {
    Connection connection;
    MessageStream stream(connection.own.get(), connection.own.get());
    ASSERT_TRUE(stream.send(encodedHello()));
    connection.peer.reset();
    EXPECT_FALSE(stream.receive());
    EXPECT_EQ(stream.ending(), Ending::closed);
}

TEST(MessageStream, FailsWhereNothingCanBeRead) {
    const FileDescriptor folder(open("/", O_RDONLY | O_CLOEXEC));
    MessageStream stream(folder.get(), folder.get());
    EXPECT_FALSE(stream.receive());
    EXPECT_EQ(stream.ending(), Ending::failed);
}

TEST(MessageStream, SendsNothingToAPeerThatIsGone) {
    Connection connection;
    MessageStream stream(connection.own.get(), connection.own.get());
    connection.peer.reset();
    EXPECT_FALSE(stream.send(encodedHello())) << "and no signal has ended this process";
}

/// How calls wait: in the call itself, or, on a descriptor that does not block, before it.
class MessageStreamInterrupted : public testing::TestWithParam<bool> {
  protected:
    MessageStreamInterrupted() {
        if (GetParam()) connection_.blockNothing();
    }
    Connection connection_;
    MessageStream stream_{connection_.own.get(), connection_.own.get()};
};

TEST_P(MessageStreamInterrupted, ReceivesWhatComesAfterSeveralSignals) {
    const std::string message = encodedEnded(3);
    const SignalsThatInterrupt signals([&](int number) {
        if (number == 20) {
            static_cast<void>(!write(connection_.peer.get(), message.data(), message.size()));
        }
    });
    const auto received = stream_.receive();
    ASSERT_TRUE(received);
    EXPECT_EQ(exitStatus(*received), 3U);
}

TEST_P(MessageStreamInterrupted, SendsAllOfAMessageToAPeerThatReadsLittleByLittle) {
    const std::string text(message_limits::bodySize, 'x');
    std::string messages;
    for (int index = 0; index < 20; ++index) messages += encodedOutput(text);
    std::string read(messages.size(), '\0');
    std::size_t size = 0;
    const auto readWhatIsThere = [&] {
        const ssize_t count =
            recv(connection_.peer.get(), read.data() + size, read.size() - size, MSG_DONTWAIT);
        if (count > 0) size += static_cast<std::size_t>(count);
    };
    {
        // Only each second signal makes room: some calls send a part, and others nothing.
        const SignalsThatInterrupt signals([&](int number) {
            if (number % 2 == 0) readWhatIsThere();
        });
        EXPECT_TRUE(stream_.send(messages));
    }
    for (std::size_t before = size + 1; before != size;) {
        before = size;
        readWhatIsThere();
    }
    EXPECT_TRUE(read == messages);
}

INSTANTIATE_TEST_SUITE_P(Descriptors, MessageStreamInterrupted, testing::Bool(),
                         [](const auto& row) {
                             return row.param ? "thatDoNotBlock" : "thatBlock";
                         });

TEST(MessageStream, CallsItsCallerWhileItWaits) {
    const Connection connection;
    MessageStream stream(connection.own.get(), connection.own.get());
    int calls = 0;
    const auto received = stream.receive([&] {
        if (++calls == 3) connection.sendFromPeer(encodedEnded(3));
    });
    EXPECT_EQ(calls, 3);
    EXPECT_TRUE(received);
}

TEST(MessageStream, CanSendUntilThePeerReadsNoMore) {
    const Connection connection;
    connection.blockNothing();
    const MessageStream stream(connection.own.get(), connection.own.get());
    EXPECT_TRUE(stream.canSend());
    while (write(connection.own.get(), "x", 1) == 1) {
    }
    EXPECT_FALSE(stream.canSend());
}

}  // namespace
}  // namespace installer::test

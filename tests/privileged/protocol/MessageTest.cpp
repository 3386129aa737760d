#include <string>

#include <gtest/gtest.h>

#include "privileged/protocol/Message.h"

namespace installer::test {
namespace {

using State = MessageDecoder::State;

Message decoded(const std::string& bytes) {
    MessageDecoder decoder;
    decoder.append(bytes);
    Message message;
    EXPECT_EQ(decoder.next(message), State::message);
    EXPECT_TRUE(decoder.atBoundary());
    return message;
}

Message requestWithBody(const std::string& body) {
    return {MessageType::request, body};
}

std::string number(std::uint32_t value) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
    return bytes;
}

TEST(Message, EachKindComesBackAsItWasSent) {
    EXPECT_EQ(helloVersion(decoded(encodedHello())), protocolVersion);
    EXPECT_EQ(progressBytes(decoded(encodedProgress(0x1122334455667788U))), 0x1122334455667788U);
    EXPECT_EQ(exitStatus(decoded(encodedEnded(126))), 126U);
    EXPECT_EQ(decoded(encodedOutput("text")).body, "text");
    const ToolRequest request{"/bin/rm", {"-fR", std::string("/a\0b", 4), ""}};
    EXPECT_EQ(toolRequest(decoded(encodedRequest(request).value())), request);
}

TEST(Message, IsNotTakenForAnotherKind) {
    EXPECT_FALSE(helloVersion(decoded(encodedEnded(1))));
    EXPECT_FALSE(exitStatus(decoded(encodedHello())));
    EXPECT_FALSE(toolRequest(decoded(encodedOutput("x"))));
    EXPECT_FALSE(progressBytes(decoded(encodedEnded(1))));
}

TEST(Message, SaysNothingWhenItsNumberHasAnotherLength) {
    for (const std::size_t size : {0U, 3U, 5U, 8U}) {
        EXPECT_FALSE(exitStatus({MessageType::ended, std::string(size, '\1')})) << size;
        EXPECT_FALSE(helloVersion({MessageType::hello, std::string(size, '\1')})) << size;
    }
    for (const std::size_t size : {0U, 4U, 7U, 9U}) {
        EXPECT_FALSE(progressBytes({MessageType::progress, std::string(size, '\1')})) << size;
    }
}

TEST(Message, IsReadWhenItComesByteForByte) {
    const std::string bytes = encodedRequest({"/bin/touch", {"/x"}}).value() + encodedEnded(3);
    MessageDecoder decoder;
    Message message;
    int messages = 0;
    for (const char byte : bytes) {
        decoder.append({&byte, 1});
        if (decoder.next(message) == State::message) ++messages;
    }
    EXPECT_EQ(messages, 2);
    EXPECT_EQ(exitStatus(message), 3U);
    EXPECT_TRUE(decoder.atBoundary());
}

TEST(Message, IsMalformedBeforeItsLengthIsThereWhenItsTypeIsUnknown) {
    for (const std::uint32_t type : {0U, 7U, 0xffffffffU}) {
        MessageDecoder decoder;
        decoder.append(number(type));
        Message message;
        EXPECT_EQ(decoder.next(message), State::malformed) << type;
    }
}

TEST(Message, IsMalformedBeforeItsBodyIsThereWhenItIsTooLong) {
    MessageDecoder decoder;
    decoder.append(number(2) + number(message_limits::bodySize + 1));
    Message message;
    EXPECT_EQ(decoder.next(message), State::malformed);
}

TEST(Message, IsTakenWhenItIsExactlyAsLongAsTheLimit) {
    EXPECT_EQ(decoded(encodedOutput(std::string(message_limits::bodySize, 'x'))).body.size(),
              message_limits::bodySize);
    EXPECT_EQ(decoded(encodedOutput(std::string(message_limits::bodySize + 5, 'x'))).body.size(),
              message_limits::bodySize);
}

TEST(Message, IsIncompleteAndNotAtABoundaryWhenItIsCutShort) {
    const std::string bytes = encodedEnded(1);
    for (std::size_t size = 1; size < bytes.size(); ++size) {
        MessageDecoder decoder;
        decoder.append(bytes.substr(0, size));
        Message message;
        EXPECT_EQ(decoder.next(message), State::incomplete);
        EXPECT_FALSE(decoder.atBoundary());
    }
}

TEST(MessageToolRequest, IsRefusedWhenItsBodyIsNotExactlyAsDescribed) {
    const std::string text = number(1) + "x";
    EXPECT_TRUE(toolRequest(requestWithBody(number(1) + text)));
    EXPECT_FALSE(toolRequest(requestWithBody("")));
    EXPECT_FALSE(toolRequest(requestWithBody(number(0)))) << "no tool";
    EXPECT_FALSE(toolRequest(requestWithBody(number(2) + text))) << "a text too few";
    EXPECT_FALSE(toolRequest(requestWithBody(number(1) + text + "y"))) << "a byte too many";
    EXPECT_FALSE(toolRequest(requestWithBody(number(1) + number(2) + "x"))) << "a text too long";
    EXPECT_FALSE(toolRequest(requestWithBody(number(1) + number(0xffffffffU) + "x")));
    EXPECT_FALSE(toolRequest(requestWithBody(number(0xffffffffU) + text)));
    EXPECT_FALSE(toolRequest(requestWithBody(number(1) + "\1"))) << "half a length";
}

TEST(MessageToolRequest, HasAtMostSixteenTexts) {
    EXPECT_TRUE(encodedRequest({"t", std::vector<std::string>(15, "a")}));
    EXPECT_FALSE(encodedRequest({"t", std::vector<std::string>(16, "a")}));
    std::string body = number(17);
    for (int index = 0; index < 17; ++index) body += number(1) + "a";
    EXPECT_FALSE(toolRequest(requestWithBody(body)));
}

TEST(MessageToolRequest, IsNotEncodedWhenItFitsInNoMessage) {
    EXPECT_FALSE(encodedRequest({"t", {std::string(message_limits::bodySize, 'a')}}));
    EXPECT_FALSE(encodedRequest({std::string(message_limits::bodySize, 'a'), {}}));
    EXPECT_TRUE(encodedRequest({"", {std::string(message_limits::bodySize - 12, 'a')}}));
}

TEST(MessagePlanTexts, ComeBackInAsManyMessagesAsTheyNeed) {
    PlanTexts plan{PlanTexts::Kind::removableNames, {}};
    for (int index = 0; index < 3000; ++index) {
        plan.texts.push_back(std::string(100, 'x') + std::to_string(index));
    }
    MessageDecoder decoder;
    decoder.append(encodedPlan(plan));
    PlanTexts together{plan.kind, {}};
    Message message;
    int messages = 0;
    while (decoder.next(message) == State::message) {
        const auto part = planTexts(message);
        ASSERT_TRUE(part);
        EXPECT_EQ(part->kind, plan.kind);
        together.texts.insert(together.texts.end(), part->texts.begin(), part->texts.end());
        ++messages;
    }
    EXPECT_EQ(together, plan);
    EXPECT_EQ(messages, 5);
    EXPECT_TRUE(decoder.atBoundary());
}

TEST(MessagePlanTexts, WithoutTextsAreNoMessage) {
    EXPECT_EQ(encodedPlan({PlanTexts::Kind::destinations, {}}), "");
    const std::string tooLong(message_limits::bodySize, 'x');
    EXPECT_EQ(encodedPlan({PlanTexts::Kind::destinations, {tooLong}}), "");
}

TEST(MessagePlanTexts, AreNoneWhenTheirBodyIsNotAsDescribed) {
    for (const std::string& body :
         {std::string(), number(0) + number(0), number(3) + number(0),
          number(1) + number(5) + "abc", number(1) + "ab", number(1) + number(1)}) {
        EXPECT_FALSE(planTexts({MessageType::plan, body})) << body.size();
    }
    EXPECT_FALSE(planTexts({MessageType::request, number(1) + number(1) + "x"}));
    EXPECT_TRUE(planTexts({MessageType::plan, number(1) + number(1) + "x"}));
}

}  // namespace
}  // namespace installer::test

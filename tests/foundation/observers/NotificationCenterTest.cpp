#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/observers/NotificationCenter.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotificationCenterTest : public testing::Test {
  protected:
    NotificationCenter::Observer writing(std::string word) {
        return [this, word = std::move(word)](const Notification&) { words.push_back(word); };
    }

    NotificationCenter center;
    std::vector<std::string> words;
};

TEST_F(NotificationCenterTest, GivesTheWholeNotificationBeforePostReturns) {
    Notification received;
    const Subscription handle =
        center.observe("change", [&](const Notification& given) { received = given; });
    center.post({"change", this, {{"oldState", -1}}});
    EXPECT_EQ(received.name, "change");
    EXPECT_EQ(received.sender, this);
    EXPECT_THAT(received.userInformation, ElementsAre(testing::Pair("oldState", -1)));
}

TEST_F(NotificationCenterTest, CallsObserversOfTheNameAloneInTheOrderOfTheirSubscription) {
    const Subscription first = center.observe("a", writing("first"));
    const Subscription other = center.observe("b", writing("other"));
    const Subscription second = center.observe("a", writing("second"));
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("first", "second"));
}

TEST_F(NotificationCenterTest, PostingWhatNobodyObservesDoesNothing) {
    center.post({"a"});
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(NotificationCenterTest, ADestroyedHandleEndsTheCalls) {
    {
        const Subscription handle = center.observe("a", writing("gone"));
    }
    center.post({"a"});
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(NotificationCenterTest, ACanceledHandleCanBeCanceledAgain) {
    Subscription handle = center.observe("a", writing("gone"));
    const Subscription other = center.observe("a", writing("stays"));
    handle.cancel();
    handle.cancel();
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("stays"));
}

TEST_F(NotificationCenterTest, AMovedHandleKeepsTheSubscription) {
    Subscription handle = center.observe("a", writing("called"));
    const Subscription moved = std::move(handle);
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("called"));
}

TEST_F(NotificationCenterTest, AHandleThatTakesAnotherGivesItsOwnUp) {
    Subscription handle = center.observe("a", writing("old"));
    handle = center.observe("a", writing("new"));
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("new"));
}

TEST_F(NotificationCenterTest, AnObserverCanUnsubscribeItselfWhileItIsCalled) {
    Subscription self;
    const std::string kept = "a text that is too long to lie within the observer itself";
    self = center.observe("a", [&, kept](const Notification&) {
        self.cancel();
        words.push_back(kept);
    });
    const Subscription after = center.observe("a", writing("after"));
    center.post({"a"});
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre(kept, "after", "after"));
}

TEST_F(NotificationCenterTest, AnObserverThatAnotherUnsubscribesIsNotCalledAnyMore) {
    Subscription second;
    const Subscription first = center.observe("a", [&](const Notification&) { second.cancel(); });
    second = center.observe("a", writing("second"));
    const Subscription third = center.observe("a", writing("third"));
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("third"));
}

TEST_F(NotificationCenterTest, AnEarlierObserverCanBeUnsubscribedWithoutSkippingAnyone) {
    Subscription first = center.observe("a", writing("first"));
    const Subscription second = center.observe("a", [&](const Notification&) { first.cancel(); });
    const Subscription third = center.observe("a", writing("third"));
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("first", "third"));
}

TEST_F(NotificationCenterTest, AnObserverThatSubscribesDuringAPostIsCalledFromTheNextOneOn) {
    std::vector<Subscription> later;
    Subscription first = center.observe("a", [&](const Notification&) {
        for (int round = 0; round < 100; ++round) {
            later.push_back(center.observe("a", writing("later")));
        }
    });
    const Subscription second = center.observe("a", writing("second"));
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("second"));
    first.cancel();
    center.post({"a"});
    EXPECT_EQ(words.size(), 1U + 1U + 100U);
}

TEST_F(NotificationCenterTest, AnObserverCanPostAgain) {
    const Subscription outer = center.observe("a", [&](const Notification&) {
        words.emplace_back("before");
        center.post({"b"});
        words.emplace_back("after");
    });
    const Subscription inner = center.observe("b", writing("inner"));
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("before", "inner", "after"));
}

TEST_F(NotificationCenterTest, AnObserverUnsubscribedInANestedPostIsNotCalledByTheOuterOne) {
    Subscription last;
    const Subscription first =
        center.observe("a", [&](const Notification&) { center.post({"b"}); });
    const Subscription nested = center.observe("b", [&](const Notification&) { last.cancel(); });
    last = center.observe("a", writing("last"));
    center.post({"a"});
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(NotificationCenterTest, AnObserverUnsubscribedWhileItRunsIsNotCalledByANestedPost) {
    Subscription self;
    self = center.observe("a", [&](const Notification&) {
        words.emplace_back("self");
        self.cancel();
        center.post({"a"});
    });
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("self"));
}

TEST_F(NotificationCenterTest, WhatAnObserverHoldsMayUnsubscribeOthersAsItGoes) {
    auto held = std::make_shared<Subscription>(center.observe("a", writing("held")));
    Subscription holder = center.observe(
        "a", [held = std::exchange(held, nullptr)](const Notification&) { (void)held; });
    const Subscription last = center.observe("a", writing("last"));
    holder.cancel();
    center.post({"a"});
    EXPECT_THAT(words, ElementsAre("last"));
}

TEST_F(NotificationCenterTest, HandlesMayOutliveTheCenter) {
    auto shortLived = std::make_unique<NotificationCenter>();
    Subscription handle = shortLived->observe("a", writing("never"));
    shortLived.reset();
    handle.cancel();
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(NotificationCenterTest, AnObserverMayDestroyTheCenter) {
    auto shortLived = std::make_unique<NotificationCenter>();
    Subscription third;
    const Subscription first = shortLived->observe("a", [&](const Notification&) {
        shortLived.reset();
        third.cancel();
    });
    const Subscription second = shortLived->observe("a", writing("second"));
    third = shortLived->observe("a", writing("third"));
    shortLived->post({"a"});
    EXPECT_THAT(words, ElementsAre("second"));
}

}  // namespace
}  // namespace installer::test

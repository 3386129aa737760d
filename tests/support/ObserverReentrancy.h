#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/observers/Subscription.h"

namespace installer::test {

/// What an observer may do in its call, whoever keeps the list of observers. `Subject` is
/// default-made and has `Subscription observe(std::function<void()>)`, `void notify()`, which calls
/// the observers, and `void destroy()`, which destroys the observed object, also in a call.
template <class Subject>
class ObserverReentrancy : public testing::Test {
  protected:
    std::function<void()> writing(std::string word) {
        return [this, word = std::move(word)] { words.push_back(word); };
    }

    // The subject goes first: observers capture this test.
    std::vector<std::string> words;
    std::vector<Subscription> later;
    Subject subject;
};

TYPED_TEST_SUITE_P(ObserverReentrancy);

TYPED_TEST_P(ObserverReentrancy, AnObserverMayUnsubscribeItself) {
    Subscription self;
    const std::string kept = "a text that is too long to lie within the observer itself";
    self = this->subject.observe([&, kept] {
        self.cancel();
        this->words.push_back(kept);
    });
    const Subscription after = this->subject.observe(this->writing("after"));
    this->subject.notify();
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre(kept, "after", "after"));
}

TYPED_TEST_P(ObserverReentrancy, AnObserverMayUnsubscribeALaterOne) {
    Subscription second;
    const Subscription first = this->subject.observe([&] { second.cancel(); });
    second = this->subject.observe(this->writing("second"));
    const Subscription third = this->subject.observe(this->writing("third"));
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre("third"));
}

TYPED_TEST_P(ObserverReentrancy, AnObserverMayUnsubscribeAnEarlierOne) {
    Subscription first = this->subject.observe(this->writing("first"));
    const Subscription second = this->subject.observe([&] { first.cancel(); });
    const Subscription third = this->subject.observe(this->writing("third"));
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre("first", "third"));
}

TYPED_TEST_P(ObserverReentrancy, AnObserverMaySubscribeOthersWhichAreCalledFromTheNextTimeOn) {
    Subscription first = this->subject.observe([&] {
        for (int count = 0; count < 100; ++count) {
            this->later.push_back(this->subject.observe(this->writing("later")));
        }
    });
    const Subscription second = this->subject.observe(this->writing("second"));
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre("second"));
    first.cancel();
    this->subject.notify();
    EXPECT_EQ(this->words.size(), 1U + 1U + 100U);
}

TYPED_TEST_P(ObserverReentrancy, AnObserverMayCauseTheEventAgain) {
    bool isNested = false;
    const Subscription first = this->subject.observe([&] {
        this->words.emplace_back("first");
        if (!std::exchange(isNested, true)) this->subject.notify();
    });
    const Subscription second = this->subject.observe(this->writing("second"));
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre("first", "first", "second", "second"));
}

TYPED_TEST_P(ObserverReentrancy, AnObserverThatIsRemovedInANestedCallIsNotCalledByTheOuterOne) {
    Subscription last;
    bool isNested = false;
    const Subscription first = this->subject.observe([&] {
        if (std::exchange(isNested, true)) {
            last.cancel();
        } else {
            this->subject.notify();
        }
    });
    last = this->subject.observe(this->writing("last"));
    this->subject.notify();
    EXPECT_THAT(this->words, testing::IsEmpty());
}

TYPED_TEST_P(ObserverReentrancy, AnObserverThatIsDestroyedMayUnsubscribeOthers) {
    auto held = std::make_shared<Subscription>(this->subject.observe(this->writing("held")));
    Subscription holder =
        this->subject.observe([held = std::exchange(held, nullptr)] { (void)held; });
    const Subscription last = this->subject.observe(this->writing("last"));
    holder.cancel();
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre("last"));
}

TYPED_TEST_P(ObserverReentrancy, AnObserverMayDestroyTheObservedObject) {
    Subscription third;
    const Subscription first = this->subject.observe([&] {
        this->subject.destroy();
        third.cancel();
    });
    const Subscription second = this->subject.observe(this->writing("second"));
    third = this->subject.observe(this->writing("third"));
    this->subject.notify();
    EXPECT_THAT(this->words, testing::ElementsAre("second"));
}

TYPED_TEST_P(ObserverReentrancy, SubscriptionsMayOutliveTheObservedObject) {
    Subscription handle = this->subject.observe(this->writing("never"));
    this->subject.destroy();
    handle.cancel();
    EXPECT_THAT(this->words, testing::IsEmpty());
}

REGISTER_TYPED_TEST_SUITE_P(ObserverReentrancy, AnObserverMayUnsubscribeItself,
                            AnObserverMayUnsubscribeALaterOne, AnObserverMayUnsubscribeAnEarlierOne,
                            AnObserverMaySubscribeOthersWhichAreCalledFromTheNextTimeOn,
                            AnObserverMayCauseTheEventAgain,
                            AnObserverThatIsRemovedInANestedCallIsNotCalledByTheOuterOne,
                            AnObserverThatIsDestroyedMayUnsubscribeOthers,
                            AnObserverMayDestroyTheObservedObject,
                            SubscriptionsMayOutliveTheObservedObject);

}  // namespace installer::test

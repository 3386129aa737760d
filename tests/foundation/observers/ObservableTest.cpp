#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/observers/Observable.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ObservableTest : public testing::Test {
  protected:
    Observable::Observer writing(std::string who) {
        return [this, who = std::move(who)](Observable::Moment moment, std::string_view property) {
            const char* sign = moment == Observable::Moment::willChange ? "<" : ">";
            words.push_back(who + sign + std::string(property));
        };
    }

    Observable subject;
    std::vector<std::string> words;
};

TEST_F(ObservableTest, AnnouncesTheMomentAndTheNameAtOnce) {
    const Subscription handle = subject.observe(writing(""));
    subject.willChange("windowTitle");
    EXPECT_THAT(words, ElementsAre("<windowTitle"));
    subject.didChange("windowTitle");
    EXPECT_THAT(words, ElementsAre("<windowTitle", ">windowTitle"));
}

TEST_F(ObservableTest, CallsObserversInTheOrderOfTheirSubscription) {
    const Subscription first = subject.observe(writing("first"));
    const Subscription second = subject.observe(writing("second"));
    subject.didChange("p");
    EXPECT_THAT(words, ElementsAre("first>p", "second>p"));
}

TEST_F(ObservableTest, ADestroyedHandleEndsTheCalls) {
    {
        const Subscription handle = subject.observe(writing("gone"));
    }
    subject.didChange("p");
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(ObservableTest, OneObjectsAnnouncementsReachNoObserverOfAnother) {
    Observable other;
    const Subscription handle = other.observe(writing("other"));
    subject.didChange("p");
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(ObservableTest, AnObserverCanUnsubscribeItselfWhileItIsCalled) {
    Subscription self;
    const std::string kept = "a text that is too long to lie within the observer itself";
    self = subject.observe([&, kept](Observable::Moment, std::string_view) {
        self.cancel();
        words.push_back(kept);
    });
    const Subscription after = subject.observe(writing("after"));
    subject.willChange("p");
    subject.didChange("p");
    EXPECT_THAT(words, ElementsAre(kept, "after<p", "after>p"));
}

TEST_F(ObservableTest, AnObserverThatAnotherUnsubscribesIsNotCalledAnyMore) {
    Subscription second;
    const Subscription first =
        subject.observe([&](Observable::Moment, std::string_view) { second.cancel(); });
    second = subject.observe(writing("second"));
    const Subscription third = subject.observe(writing("third"));
    subject.didChange("p");
    EXPECT_THAT(words, ElementsAre("third>p"));
}

TEST_F(ObservableTest, AnObserverThatSubscribesDuringAnAnnouncementIsCalledFromTheNextOneOn) {
    std::vector<Subscription> later;
    Subscription first = subject.observe([&](Observable::Moment, std::string_view) {
        later.push_back(subject.observe(writing("later")));
    });
    subject.willChange("p");
    EXPECT_THAT(words, IsEmpty());
    first.cancel();
    subject.didChange("p");
    EXPECT_THAT(words, ElementsAre("later>p"));
}

TEST_F(ObservableTest, AnObserverCanAnnounceAnotherProperty) {
    const Subscription handle = subject.observe([&](Observable::Moment, std::string_view property) {
        if (property == "goForwardText") subject.didChange("enableForward");
    });
    const Subscription last = subject.observe(writing(""));
    subject.didChange("goForwardText");
    EXPECT_THAT(words, ElementsAre(">enableForward", ">goForwardText"));
}

TEST_F(ObservableTest, HandlesMayOutliveTheObject) {
    auto shortLived = std::make_unique<Observable>();
    Subscription handle = shortLived->observe(writing("never"));
    shortLived.reset();
    handle.cancel();
    EXPECT_THAT(words, IsEmpty());
}

TEST_F(ObservableTest, AnObserverMayDestroyTheObject) {
    auto shortLived = std::make_unique<Observable>();
    const Subscription first =
        shortLived->observe([&](Observable::Moment, std::string_view) { shortLived.reset(); });
    const Subscription second = shortLived->observe(writing("second"));
    shortLived->didChange("p");
    EXPECT_THAT(words, ElementsAre("second>p"));
}

}  // namespace
}  // namespace installer::test

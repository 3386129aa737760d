#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/observers/NotificationCenter.h"
#include "foundation/observers/Observable.h"
#include "foundation/observers/ObserverList.h"
#include "tests/support/ObserverReentrancy.h"

namespace installer::test {
namespace {

using testing::ElementsAre;

TEST(ObserverList, GivesEveryObserverTheArgumentsInTheOrderOfSubscription) {
    ObserverList<int, std::string> list;
    std::vector<std::string> words;
    const Subscription first = list.add([&](int number, const std::string& text) {
        words.push_back("first " + std::to_string(number) + text);
    });
    const Subscription second = list.add([&](int number, const std::string& text) {
        words.push_back("second " + std::to_string(number) + text);
    });
    list.call(3, "a");
    EXPECT_THAT(words, ElementsAre("first 3a", "second 3a"));
}

TEST(ObserverList, PassesAnArgumentThatIsAReferenceWithoutCopyingIt) {
    ObserverList<const std::string&> list;
    const std::string* received = nullptr;
    const Subscription handle = list.add([&](const std::string& text) { received = &text; });
    const std::string text = "text";
    list.call(text);
    EXPECT_EQ(received, &text);
}

TEST(ObserverList, IsEmptyWithoutObservers) {
    ObserverList<> list;
    EXPECT_TRUE(list.isEmpty());
    Subscription handle = list.add([] {});
    EXPECT_FALSE(list.isEmpty());
    handle.cancel();
    EXPECT_TRUE(list.isEmpty());
}

// The same rules hold for everybody who keeps a list of observers.

class ListSubject {
  public:
    Subscription observe(std::function<void()> observer) { return list_->add(std::move(observer)); }
    void notify() { list_->call(); }
    void destroy() { list_.reset(); }

  private:
    std::unique_ptr<ObserverList<>> list_ = std::make_unique<ObserverList<>>();
};

class ObservableSubject {
  public:
    Subscription observe(std::function<void()> observer) {
        return observable_->observe(
            [observer = std::move(observer)](Observable::Moment, std::string_view) { observer(); });
    }
    void notify() { observable_->didChange("p"); }
    void destroy() { observable_.reset(); }

  private:
    std::unique_ptr<Observable> observable_ = std::make_unique<Observable>();
};

class CenterSubject {
  public:
    Subscription observe(std::function<void()> observer) {
        return center_->observe(
            "a", [observer = std::move(observer)](const Notification&) { observer(); });
    }
    void notify() { center_->post({"a"}); }
    void destroy() { center_.reset(); }

  private:
    std::unique_ptr<NotificationCenter> center_ = std::make_unique<NotificationCenter>();
};

using Subjects = testing::Types<ListSubject, ObservableSubject, CenterSubject>;
INSTANTIATE_TYPED_TEST_SUITE_P(Observers, ObserverReentrancy, Subjects);

}  // namespace
}  // namespace installer::test

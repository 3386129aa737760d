#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/observers/Subscription.h"

namespace installer {

/// The observers of one kind of event, called in the order in which they were added. During its
/// call an observer may add and remove observers, itself included, cause the event again, and
/// destroy the object that owns this list. Subscriptions may outlive the list. One thread only.
///
/// An observer that is removed is never called again, not even by a call that has already begun.
/// One that is added is called from the next call on. When an observer destroys the list, those
/// after it are still called, unless they are removed.
template <class... Arguments>
class ObserverList {
  public:
    using Observer = std::function<void(Arguments...)>;

    ObserverList() = default;
    ObserverList(const ObserverList&) = delete;
    ObserverList& operator=(const ObserverList&) = delete;

    /// Calls `observer`, which is not empty, until the subscription is destroyed.
    [[nodiscard]] Subscription add(Observer observer) {
        auto entry = std::make_shared<Entry>(Entry{std::move(observer)});
        entries_->push_back(entry);
        return Subscription([list = std::weak_ptr(entries_), weakEntry = std::weak_ptr(entry)] {
            // Destroying an observer destroys what it captured, which may be the subscription of
            // another one. So it is destroyed last, after the change of the list.
            const auto removed = weakEntry.lock();
            if (!removed) return;
            removed->isSubscribed = false;
            if (const auto entries = list.lock()) std::erase(*entries, removed);
        });
    }

    /// The arguments must outlive the call: the caller copies what an observer could destroy.
    void call(const Arguments&... arguments) const {
        // An observer may destroy this list: from here on only the copy is used.
        const Entries entries = *entries_;
        for (const auto& entry : entries) {
            if (entry->isSubscribed) entry->observer(arguments...);
        }
    }

    [[nodiscard]] bool isEmpty() const { return entries_->empty(); }

  private:
    struct Entry {
        Observer observer;
        bool isSubscribed = true;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace installer

#include "foundation/observers/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace installer {

struct NotificationCenter::Entry {
    std::string name;
    Observer observer;
};

NotificationCenter::NotificationCenter() : entries_(std::make_shared<Entries>()) {}

Subscription NotificationCenter::observe(std::string name, Observer observer) {
    auto entry = std::make_shared<Entry>(Entry{std::move(name), std::move(observer)});
    entries_->push_back(entry);
    return Subscription([weakEntries = std::weak_ptr(entries_), weakEntry = std::weak_ptr(entry)] {
        const auto entries = weakEntries.lock();
        // Held to the end: what the observer captured may unsubscribe others as it is destroyed,
        // which must not happen while the list is being changed.
        const auto kept = weakEntry.lock();
        if (entries && kept) std::erase(*entries, kept);
    });
}

void NotificationCenter::post(const Notification& notification) {
    const auto entries = entries_;  // an observer may destroy the centre
    const Entries atTheStart(entries->begin(), entries->end());
    for (const auto& entry : atTheStart) {
        if (entry->name != notification.name) continue;
        const bool stillObserves = std::ranges::find(*entries, entry) != entries->end();
        if (stillObserves) entry->observer(notification);
    }
}

}  // namespace installer

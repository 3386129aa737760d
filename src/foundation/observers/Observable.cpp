#include "foundation/observers/Observable.h"

#include <algorithm>
#include <utility>

namespace installer {

Observable::Observable() : observers_(std::make_shared<Observers>()) {}

Subscription Observable::observe(Observer observer) {
    auto entry = std::make_shared<Observer>(std::move(observer));
    observers_->push_back(entry);
    return Subscription(
        [weakObservers = std::weak_ptr(observers_), weakEntry = std::weak_ptr(entry)] {
            const auto observers = weakObservers.lock();
            // Held to the end: what the observer captured may unsubscribe others as it is
            // destroyed, which must not happen while the list is being changed.
            const auto kept = weakEntry.lock();
            if (observers && kept) std::erase(*observers, kept);
        });
}

void Observable::willChange(std::string_view property) {
    announce(Moment::willChange, property);
}

void Observable::didChange(std::string_view property) {
    announce(Moment::didChange, property);
}

void Observable::announce(Moment moment, std::string_view property) {
    const auto observers = observers_;  // an observer may destroy this object
    const Observers atTheStart(observers->begin(), observers->end());
    for (const auto& observer : atTheStart) {
        const bool stillObserves = std::ranges::find(*observers, observer) != observers->end();
        if (stillObserves) (*observer)(moment, property);
    }
}

}  // namespace installer

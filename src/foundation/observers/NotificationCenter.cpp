#include "foundation/observers/NotificationCenter.h"

#include <utility>

namespace installer {

Subscription NotificationCenter::observe(const std::string& name, Observer observer) {
    return observers_[name].add(std::move(observer));
}

void NotificationCenter::post(const Notification& notification) {
    const auto found = observers_.find(notification.name);
    if (found != observers_.end()) found->second.call(notification);
}

}  // namespace installer

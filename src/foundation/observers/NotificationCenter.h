#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "foundation/observers/ObserverList.h"

namespace installer {

/// An event with a name, a sender and some numbers.
struct Notification {
    std::string name;
    /// The object that posted it. An observer compares it, or casts it to the type that posts
    /// notifications of this name.
    const void* sender = nullptr;
    std::map<std::string, std::int32_t> userInformation = {};
};

/// Posted once when the application is about to end.
inline constexpr const char* applicationWillTerminate = "applicationWillTerminate";

/// The application's notification centre. `post` calls every observer of the notification's name
/// before it returns, in the order in which they subscribed. Observers may do in their call what
/// `ObserverList` allows. Main thread only.
class NotificationCenter {
  public:
    using Observers = ObserverList<const Notification&>;
    using Observer = Observers::Observer;

    /// Calls `observer` for every notification of that name until the subscription is destroyed.
    /// The subscription may outlive the centre.
    [[nodiscard]] Subscription observe(const std::string& name, Observer observer);

    void post(const Notification& notification);

  private:
    std::map<std::string, Observers> observers_;  ///< by the name of the notification
};

}  // namespace installer

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/observers/Subscription.h"

namespace installer {

/// Something that happened, told to whoever observes its name.
struct Notification {
    std::string name;
    /// The object that posted it; observers compare it or cast it back to the type they know.
    const void* sender = nullptr;
    std::map<std::string, std::int32_t> userInformation = {};
};

/// Posted once when the application is about to end.
inline constexpr const char* applicationWillTerminate = "applicationWillTerminate";

/// The application's notification centre. `post` calls every observer of the name before it
/// returns, in the order in which they subscribed; an observer that subscribes or unsubscribes
/// meanwhile does not disturb the others. Main thread only.
class NotificationCenter {
  public:
    using Observer = std::function<void(const Notification&)>;

    NotificationCenter();

    /// Calls `observer` for every notification of that name until the handle is destroyed. The
    /// handle may outlive the centre.
    [[nodiscard]] Subscription observe(std::string name, Observer observer);

    void post(const Notification& notification);

  private:
    struct Entry;
    using Entries = std::vector<std::shared_ptr<Entry>>;
    std::shared_ptr<Entries> entries_;
};

}  // namespace installer

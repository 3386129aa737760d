#pragma once

#include <string_view>

#include "foundation/observers/ObserverList.h"

namespace installer {

/// An object that announces changes of its properties by name: `willChange` before the change and
/// `didChange` after it. Observers are called at once, in the order in which they subscribed, and
/// may do in their call what `ObserverList` allows. Main thread only.
class Observable {
  public:
    enum class Moment { willChange, didChange };
    using Observer = ObserverList<Moment, std::string_view>::Observer;

    Observable() = default;
    virtual ~Observable() = default;
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;

    /// Calls `observer` with the moment and the property's name for every announcement, until the
    /// subscription is destroyed. The subscription may outlive the object.
    [[nodiscard]] Subscription observe(Observer observer);

    void willChange(std::string_view property);
    void didChange(std::string_view property);

  private:
    ObserverList<Moment, std::string_view> observers_;
};

}  // namespace installer

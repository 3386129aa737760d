#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/observers/Subscription.h"

namespace installer {

/// Something with properties whose changes are announced by name: a will-change call before and a
/// did-change call after. Observers are called at once, in the order in which they subscribed.
class Observable {
  public:
    enum class Moment { willChange, didChange };
    using Observer = std::function<void(Moment, std::string_view property)>;

    Observable();
    virtual ~Observable() = default;
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;

    /// Calls `observer` for every announcement until the handle is destroyed. The handle may
    /// outlive the object.
    [[nodiscard]] Subscription observe(Observer observer);

    void willChange(std::string_view property);
    void didChange(std::string_view property);

  private:
    void announce(Moment moment, std::string_view property);

    using Observers = std::vector<std::shared_ptr<Observer>>;
    std::shared_ptr<Observers> observers_;
};

}  // namespace installer

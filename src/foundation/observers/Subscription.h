#pragma once

#include <functional>
#include <utility>

namespace installer {

/// A handle for something that was subscribed to; destroying it unsubscribes. Movable, not
/// copyable; a default-made one holds nothing.
class [[nodiscard]] Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> unsubscribe)
        : unsubscribe_(std::move(unsubscribe)) {}
    Subscription(Subscription&& other) noexcept
        : unsubscribe_(std::exchange(other.unsubscribe_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            cancel();
            unsubscribe_ = std::exchange(other.unsubscribe_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { cancel(); }

    /// Unsubscribes now; doing it twice is harmless.
    void cancel() {
        if (auto unsubscribe = std::exchange(unsubscribe_, nullptr)) unsubscribe();
    }

  private:
    std::function<void()> unsubscribe_;
};

}  // namespace installer

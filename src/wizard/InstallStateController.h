#pragma once

#include <cstdint>

#include "wizard/StepNumbers.h"

namespace installer {

class MainController;
class NotificationCenter;
class StepController;
struct Platform;

/// Posted after every change of state: the sender is the `InstallStateController`, which knows the
/// new state, and `oldStateKey` of the user information gives the one before.
inline constexpr const char* stateDidChangeNotification = "stateDidChange";
inline constexpr const char* oldStateKey = "oldState";

/// Decides which step of the wizard is current. Every operation that changes the state posts
/// `stateDidChangeNotification` before it returns.
class InstallStateController {
  public:
    /// A wizard that has not started.
    InstallStateController(const Platform& platform, std::int32_t installType);

    /// Enters the first step from any state, without asking a step. The notification gives
    /// `notStarted` as the old state, whatever it was.
    void gotoStartingState(const void* sender);

    /// Goes one step forward, unless the current step's controller vetoes it. Without a controller
    /// nothing happens. There is no upper bound.
    void advanceStateWithStepController(StepController* stepController,
                                        MainController* mainController);

    /// Goes back, unless the current step's controller vetoes it: one step, but from the completion
    /// to the host selection. Without a controller nothing happens.
    void retreatStateWithStepController(StepController* stepController,
                                        MainController* mainController);

    [[nodiscard]] std::int32_t currentState() const { return currentState_; }

    /// The number that the constructor was given. No rule depends on it.
    [[nodiscard]] std::int32_t installType() const { return installType_; }

  private:
    void postStateDidChange(std::int32_t oldState);

    std::int32_t currentState_ = step_number::notStarted;
    std::int32_t installType_;
    NotificationCenter& notifications_;
};

}  // namespace installer

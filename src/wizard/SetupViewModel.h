#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "wizard/NavigationTexts.h"

namespace installer {

class InstallStateController;
struct Platform;

/// What the two buttons that go through the wizard say in each state. The texts are looked up
/// once, when the object is made.
class SetupViewModel {
  public:
    explicit SetupViewModel(const Platform& platform);

    /// The wizard whose state counts; shared. Without one the texts are those of the first step.
    void setStateController(std::shared_ptr<InstallStateController> stateController);

    [[nodiscard]] std::string goForwardText() const;
    [[nodiscard]] std::string goBackwardsText() const;

    // Not in use: the window shows the heading and the buttons' states of the current step. The
    // values are fixed, so a control that is bound to one of them by mistake is noticed.
    [[nodiscard]] std::string mainLabelText() const { return "bogus"; }
    [[nodiscard]] bool isForwardEnabled() const { return false; }
    [[nodiscard]] bool isBackEnabled() const { return false; }

  private:
    [[nodiscard]] std::int32_t currentState() const;

    NavigationTexts texts_;
    std::shared_ptr<InstallStateController> stateController_;
};

}  // namespace installer

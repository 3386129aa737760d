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

    // Asked for by nobody: the heading and the buttons' states are the current step's. The answers
    // are such that a control bound to them by mistake shows it.
    [[nodiscard]] std::string mainLabelText() const { return "bogus"; }
    [[nodiscard]] bool isForwardEnabled() const { return false; }
    [[nodiscard]] bool isBackEnabled() const { return false; }

  private:
    [[nodiscard]] std::int32_t currentState() const;

    NavigationTexts texts_;
    std::shared_ptr<InstallStateController> stateController_;
};

}  // namespace installer

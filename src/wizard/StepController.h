#pragma once

#include <cstdint>
#include <memory>

namespace installer {

class MainController;
class StepModel;
class View;

/// What one step of the wizard does. Directions are positive forward and negative backward.
class StepController {
  public:
    virtual ~StepController() = default;

    /// Whether the forward and the backward button may be pressed while the step is current.
    [[nodiscard]] virtual bool enableForward() const = 0;
    [[nodiscard]] virtual bool enableBackward() const = 0;

    /// Called before the state changes, with +1 or -1; false vetoes the change.
    [[nodiscard]] virtual bool canProceed(std::int32_t direction) = 0;

    /// Called on the step that is left, after the state has changed. The direction is the new
    /// state minus the old one.
    virtual void didProceed(std::int32_t direction) = 0;

    /// Called on the step that is entered, after `didProceed` of the other one. The direction is
    /// the new state minus the old one. The step shares the model and the view until it is left;
    /// the main controller outlives the step.
    virtual void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                                   MainController* mainController, std::int32_t direction) = 0;
};

/// A step with an extra button of its own.
class HasExtraButton {
  public:
    virtual ~HasExtraButton() = default;
    virtual void buttonPressed(const void* sender) = 0;
};

/// A step that can consume a press of the backward button, by setting `overridden`.
class OverridesBackButton {
  public:
    virtual ~OverridesBackButton() = default;
    virtual void overrideBackButton(const void* sender, bool& overridden) = 0;
};

/// A step that knows how the installation went.
class HasInstallOutcome {
  public:
    virtual ~HasInstallOutcome() = default;
    [[nodiscard]] virtual bool successfulInstall() const = 0;
};

}  // namespace installer

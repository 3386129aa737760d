#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "wizard/StepIndicator.h"

namespace installer {

class StepController;
class StepModel;
class View;
struct WindowPlatform;

/// The wizard's steps by their numbers. The look-ups give null for a number without a step.
class StepRegistry {
  public:
    /// `platform` outlives this object.
    explicit StepRegistry(WindowPlatform& platform) : platform_(platform) {}

    /// The parents of the steps' views and of their rows in the list of steps. Null: not added.
    void setParents(std::shared_ptr<View> dynamicView, std::shared_ptr<View> stepIndicatorView);

    /// Registers a step; each of the three may be null. The view is hidden. A step with a model
    /// gets a row in the list of steps. The row's place depends on the step's number alone, not on
    /// the order of registration.
    void addStep(const std::shared_ptr<View>& view,
                 const std::shared_ptr<StepController>& withController,
                 const std::shared_ptr<StepModel>& withModel, std::int32_t forStep);

    [[nodiscard]] std::shared_ptr<View> getViewForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepController> getControllerForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepModel> getModelForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepIndicator> getIndicatorForStep(std::int32_t step) const;

    /// Whether the object is the controller of a step other than the given one.
    [[nodiscard]] bool isControllerOfAnotherStep(const void* object, std::int32_t step) const;

  private:
    template <class Part>
    using Dictionary = std::map<std::int32_t, std::shared_ptr<Part>>;

    template <class Part>
    [[nodiscard]] static std::shared_ptr<Part> lookedUp(const Dictionary<Part>& dictionary,
                                                        std::int32_t step) {
        const auto found = dictionary.find(step);
        return found == dictionary.end() ? nullptr : found->second;
    }

    void addIndicator(const StepModel& model, std::int32_t step);

    WindowPlatform& platform_;
    std::shared_ptr<View> dynamicView_;
    std::shared_ptr<View> stepIndicatorView_;
    Dictionary<View> viewDict_;
    Dictionary<StepController> controllerDict_;
    Dictionary<StepModel> modelDict_;
    Dictionary<StepIndicator> stepIndicatorViewDict_;
};

}  // namespace installer

#include "app/StepRegistry.h"

#include <algorithm>
#include <utility>

#include "ports/window/View.h"
#include "wizard/StepController.h"
#include "wizard/StepModel.h"

namespace installer {

void StepRegistry::setParents(std::shared_ptr<View> dynamicView,
                              std::shared_ptr<View> stepIndicatorView) {
    dynamicView_ = std::move(dynamicView);
    stepIndicatorView_ = std::move(stepIndicatorView);
}

void StepRegistry::addStep(const std::shared_ptr<View>& view,
                           const std::shared_ptr<StepController>& withController,
                           const std::shared_ptr<StepModel>& withModel, std::int32_t forStep) {
    if (view) {
        view->setHidden(true);
        if (dynamicView_) dynamicView_->addSubview(view);
        viewDict_[forStep] = view;
    }
    if (withController) controllerDict_[forStep] = withController;
    if (withModel) {
        modelDict_[forStep] = withModel;
        addIndicator(*withModel, forStep);
    }
}

void StepRegistry::addIndicator(const StepModel& model, std::int32_t step) {
    std::shared_ptr<StepIndicator> indicator = StepIndicator::load(platform_);
    if (!indicator) return;
    const double listHeight = stepIndicatorView_ ? stepIndicatorView_->size().height : 0;
    const double rowHeight = indicator->height();
    indicator->placeInParentView(stepIndicatorView_,
                                 {.x = 0, .y = listHeight - rowHeight * (step + 1)});
    indicator->setText(model.stepIndicatorLabelText());
    stepIndicatorViewDict_[step] = std::move(indicator);
}

std::shared_ptr<View> StepRegistry::getViewForStep(std::int32_t step) const {
    return lookedUp(viewDict_, step);
}

std::shared_ptr<StepController> StepRegistry::getControllerForStep(std::int32_t step) const {
    return lookedUp(controllerDict_, step);
}

bool StepRegistry::isControllerOfAnotherStep(const void* object, std::int32_t step) const {
    return std::ranges::any_of(controllerDict_, [&](const auto& entry) {
        // A controller has several bases at different addresses: compare the whole object's.
        return entry.first != step && dynamic_cast<const void*>(entry.second.get()) == object;
    });
}

std::shared_ptr<StepModel> StepRegistry::getModelForStep(std::int32_t step) const {
    return lookedUp(modelDict_, step);
}

std::shared_ptr<StepIndicator> StepRegistry::getIndicatorForStep(std::int32_t step) const {
    return lookedUp(stepIndicatorViewDict_, step);
}

}  // namespace installer

#include "steps/completion/RegisterController.h"

#include <utility>

#include "ports/window/View.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/LocalizedText.h"
#include "steps/completion/RegisterModel.h"
#include "wizard/MainController.h"

namespace installer {

bool RegisterController::canProceed(std::int32_t /*direction*/) {
    return true;
}

void RegisterController::didProceed(std::int32_t /*direction*/) {
    model_.reset();
    if (view_) view_->setHidden(true);
    view_.reset();
}

void RegisterController::didEnterWithModel(std::shared_ptr<StepModel> model,
                                           std::shared_ptr<View> view,
                                           MainController* mainController,
                                           std::int32_t /*direction*/) {
    model_ = std::dynamic_pointer_cast<RegisterModel>(std::move(model));
    view_ = std::move(view);
    if (view_) view_->setHidden(false);
    mainController_ = mainController;
    if (mainController_ != nullptr) showOutcome();
}

void RegisterController::showOutcome() {
    mainController_->willChange("informativeText");
    mainController_->willChange("successfulInstall");
    if (model_) model_->willChange("backgroundImage");
    chooseText();
    mainController_->didChange("informativeText");
    mainController_->didChange("successfulInstall");
    if (model_) model_->didChange("backgroundImage");
}

void RegisterController::chooseText() {
    if (!model_) return;
    if (mainController_->successfulInstall()) {
        model_->useRegisterText();
    } else {
        model_->useFailText();
    }
}

void RegisterController::buttonPressed(const void* /*sender*/) {
    const std::string address = localizedText(platform_.bundle, "register_url");
    // A failure is in the system log; the window tells people of it.
    unopenedAddress_ = platform_.workspace.openAddress(address) ? "" : address;
}

}  // namespace installer

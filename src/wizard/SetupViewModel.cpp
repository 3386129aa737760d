#include "wizard/SetupViewModel.h"

#include <utility>

#include "ports/Platform.h"
#include "wizard/InstallStateController.h"

namespace installer {

SetupViewModel::SetupViewModel(const Platform& platform)
    : texts_(NavigationTexts::load(platform.bundle)) {}

void SetupViewModel::setStateController(std::shared_ptr<InstallStateController> stateController) {
    stateController_ = std::move(stateController);
}

std::string SetupViewModel::goForwardText() const {
    return currentState() == step_number::completion ? texts_.finish_string
                                                     : texts_.continue_string;
}

std::string SetupViewModel::goBackwardsText() const {
    return currentState() == step_number::licenseAgreement ? texts_.quit_string : texts_.go_back;
}

std::int32_t SetupViewModel::currentState() const {
    return stateController_ ? stateController_->currentState() : step_number::licenseAgreement;
}

}  // namespace installer

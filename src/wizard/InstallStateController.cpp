#include "wizard/InstallStateController.h"

#include "foundation/observers/NotificationCenter.h"
#include "ports/Platform.h"
#include "wizard/StepController.h"

namespace installer {

namespace {

constexpr std::int32_t forward = 1;
constexpr std::int32_t backward = -1;

std::int32_t stateAfter(std::int32_t state) {
    // The end of the installation leads to the completion, by a rule of its own: it must go on
    // doing so when a step is put between the two numbers.
    if (state == step_number::fileInstallation) return step_number::completion;
    return state + 1;
}

std::int32_t stateBefore(std::int32_t state) {
    // What was installed is done: the way back leads to the choice of hosts, so that the user can
    // install once more, and not into the middle of the finished run.
    if (state == step_number::completion) return step_number::hostSelection;
    if (state == step_number::licenseAgreement) return step_number::notStarted;
    return state - 1;
}

}  // namespace

InstallStateController::InstallStateController(const Platform& platform, std::int32_t installType)
    : installType_(installType), notifications_(platform.notifications) {}

void InstallStateController::gotoStartingState(const void* /*sender*/) {
    currentState_ = step_number::licenseAgreement;
    postStateDidChange(step_number::notStarted);
}

void InstallStateController::advanceStateWithStepController(StepController* stepController,
                                                            MainController* /*mainController*/) {
    if (stepController == nullptr || !stepController->canProceed(forward)) return;
    const std::int32_t oldState = currentState_;
    currentState_ = stateAfter(oldState);
    postStateDidChange(oldState);
}

void InstallStateController::retreatStateWithStepController(StepController* stepController,
                                                            MainController* /*mainController*/) {
    // Remembered before the step is asked, unlike above: a step that moves the wizard itself while
    // it is asked does not change where this press of the button leads.
    const std::int32_t oldState = currentState_;
    if (stepController == nullptr || !stepController->canProceed(backward)) return;
    currentState_ = stateBefore(oldState);
    postStateDidChange(oldState);
}

void InstallStateController::postStateDidChange(std::int32_t oldState) {
    notifications_.post({stateDidChangeNotification, this, {{oldStateKey, oldState}}});
}

}  // namespace installer

#include "wizard/InstallStateController.h"

#include "foundation/observers/NotificationCenter.h"
#include "ports/Platform.h"
#include "wizard/StepController.h"

namespace installer {

namespace {

constexpr std::int32_t forward = 1;
constexpr std::int32_t backward = -1;

std::int32_t stateAfter(std::int32_t state) {
    // A rule of its own, although the numbers follow each other: the installation leads to the
    // completion even if a step is added between the two.
    if (state == step_number::fileInstallation) return step_number::completion;
    return state + 1;
}

std::int32_t stateBefore(std::int32_t state) {
    // The installation is over. Back leads to the host selection, where the user can start another
    // one, and not into the steps of the finished one.
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
    // Read before the step is asked, unlike above: even if the step changes the state in
    // `canProceed`, this press of the button leads back from the state in which it was pressed.
    const std::int32_t oldState = currentState_;
    if (stepController == nullptr || !stepController->canProceed(backward)) return;
    currentState_ = stateBefore(oldState);
    postStateDidChange(oldState);
}

void InstallStateController::postStateDidChange(std::int32_t oldState) {
    notifications_.post({stateDidChangeNotification, this, {{oldStateKey, oldState}}});
}

}  // namespace installer

#include "steps/aperture/ApertureRunController.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "foundation/values/Paths.h"
#include "ports/Clock.h"
#include "ports/window/View.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/PlugInFilesModel.h"
#include "steps/aperture/ApertureRunModel.h"
#include "wizard/MainController.h"

namespace installer {

namespace {

constexpr std::chrono::seconds timeToSetItselfUp{2};

}  // namespace

void ApertureRunController::didEnterWithModel(std::shared_ptr<StepModel> model,
                                              std::shared_ptr<View> view,
                                              MainController* mainController,
                                              std::int32_t /*direction*/) {
    model_ = std::dynamic_pointer_cast<ApertureRunModel>(model);
    view_ = std::move(view);
    if (view_) view_->setHidden(false);
    mainController_ = mainController;
    mainController_->willChange("informativeText");
    mainController_->willChange("successfulInstall");
    if (model_) model_->willChange("backgroundImage");
    mainController_->didChange("informativeText");
    mainController_->didChange("successfulInstall");
    if (model_) model_->didChange("backgroundImage");
}

void ApertureRunController::didProceed(std::int32_t /*direction*/) {
    runStandAloneApplicationOnce();
    model_.reset();
    if (view_) view_->setHidden(true);
    view_.reset();
}

void ApertureRunController::runStandAloneApplicationOnce() {
    const PlugInFilesModel paths(platform_);
    const std::vector<std::string> applications =
        paths.getFullPathsOfFilesInBundle(paths.getStandAloneAppsDirInBundle());
    if (applications.empty()) return;
    const std::string installed =
        joinPath(paths.standAloneAppsInstallPath(), lastPathComponent(applications.front()));
    const auto application = platform_.workspace.launchHidden(installed, {"-no-ui"});
    if (!application) return;
    platform_.clock.sleep(timeToSetItselfUp);
    application->terminate();
}

}  // namespace installer

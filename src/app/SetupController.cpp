#include "app/SetupController.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "app/AboutAlert.h"
#include "app/HelpPage.h"
#include "app/texts/HostRefusal.h"
#include "app/texts/WindowTexts.h"
#include "foundation/observers/NotificationCenter.h"
#include "hosts/HostLists.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/BundleUserDefaults.h"
#include "product/ProductFacts.h"
#include "product/RtfResource.h"
#include "steps/aperture/ApertureRunController.h"
#include "steps/aperture/ApertureRunModel.h"
#include "steps/completion/RegisterController.h"
#include "steps/completion/RegisterModel.h"
#include "steps/hosts/HostsController.h"
#include "steps/hosts/HostsModel.h"
#include "steps/install/InstallFilesController.h"
#include "steps/install/InstallFilesModel.h"
#include "steps/licence/LicenseController.h"
#include "steps/licence/LicenseModel.h"
#include "steps/running/RunningHostViewController.h"
#include "steps/running/RunningHostViewModel.h"
#include "wizard/InstallStateController.h"
#include "wizard/NavigationTexts.h"
#include "wizard/SetupViewModel.h"

namespace installer {

namespace {

constexpr const char* launchHelpKey = "launch_help_url";

/// The properties that every change of step announces, in this order.
constexpr std::array<const char*, 5> stepProperties = {
    "enableForward", "enableBackward", "mainLabelText", "informativeText", "successfulInstall"};

}  // namespace

SetupController::SetupController(WindowPlatform& platform)
    : platform_(platform),
      stateController_(std::make_shared<InstallStateController>(platform, 0)),
      viewModel_(std::make_unique<SetupViewModel>(platform)),
      steps_(platform),
      licenseModel_(std::make_shared<LicenseModel>(platform)),
      licenseController_(std::make_shared<LicenseController>(platform)),
      installFilesModel_(std::make_shared<InstallFilesModel>(platform)),
      installFilesController_(std::make_shared<InstallFilesController>(platform)),
      hostsModel_(std::make_shared<HostsModel>(platform)),
      hostsController_(std::make_shared<HostsController>(platform)),
      hostsRunningModel_(std::make_shared<RunningHostViewModel>(platform)),
      hostsRunningController_(std::make_shared<RunningHostViewController>(platform)),
      registerModel_(std::make_shared<RegisterModel>(platform)),
      registerController_(std::make_shared<RegisterController>(platform)),
      apertureRunModel_(std::make_shared<ApertureRunModel>(platform)),
      apertureRunController_(std::make_shared<ApertureRunController>(platform)),
      failureReport_(platform, *installFilesController_),
      neededSpace_(platform) {
    viewModel_->setStateController(stateController_);
    const NavigationTexts texts = NavigationTexts::load(platform.bundle);
    goForwardText_ = texts.continue_string;
    goBackwardsText_ = texts.quit_string;
    bindTexts();
    bindStates();
    bindOptions();
    bindPages();
    bindProgress();
    bindFailureReport();
    bindActions();
    followChanges();
    unselectRefusedHosts();
}

SetupController::~SetupController() = default;

void SetupController::followChanges() {
    stateChanges_ = platform_.notifications.observe(
        stateDidChangeNotification,
        [this](const Notification& notification) { stateDidChange(notification); });
    ownAnnouncements_ = follow(*this);
    optionAnnouncements_ = follow(options_);
    runningAnnouncements_ = follow(hostsRunningController_->changes());
    progressAnnouncements_ = follow(installFilesController_->progressChanges());
    failedOpenings_ = platform_.workspace.onOpeningFailed(
        [this](const std::string& addressOrPath) { tellUnopened(addressOrPath); });
}

void SetupController::unselectRefusedHosts() {
    for (const HostModel& host : foundHosts()) {
        if (linkRefusalOf(platform_, host) != LinkRefusal::none) host.setHostIsSelected(false);
    }
}

// Start-up

void SetupController::awakeFromNib(std::unique_ptr<Interface> interface) {
    interface_ = std::move(interface);
    window_ = MainWindow(*interface_);
    steps_.setParents(window_.dynamicView, window_.stepIndicatorView);
    registerSteps();
    stateController_->gotoStartingState(this);
    for (const char* property : {"licenseText", "foundHosts", "informativeText", "copyInProgress",
                                 "windowTitle", "mainLabelText"}) {
        announce(property);
    }

    BundleUserDefaults defaults(platform_, settingsDomain);
    defaults.registerDefaults({{launchHelpKey, true}});
    setLaunchHelpURL(defaults.boolForKey(launchHelpKey));
    if (window_.mainWindow) window_.mainWindow->centerAndShow();
}

void SetupController::registerSteps() {
    hostsRunningController_->setModel(hostsRunningModel_);
    installFilesController_->setProgressIndicator(window_.installProgress.get());
    addStep(window_.licenseView, licenseController_, licenseModel_, step_number::licenseAgreement);
    addStep(window_.installFilesView, installFilesController_, installFilesModel_,
            step_number::fileInstallation);
    addStep(window_.hostsView, hostsController_, hostsModel_, step_number::hostSelection);
    addStep(window_.rtfView, hostsRunningController_, hostsRunningModel_,
            step_number::runningHostCheck);
    addStep(window_.registerView, registerController_, registerModel_, step_number::completion);
}

void SetupController::addStep(const std::shared_ptr<View>& view,
                              const std::shared_ptr<StepController>& withController,
                              const std::shared_ptr<StepModel>& withModel, std::int32_t forStep) {
    steps_.addStep(view, withController, withModel, forStep);
    if (withModel) modelAnnouncements_[forStep] = follow(*withModel);
}

std::shared_ptr<View> SetupController::getViewForStep(std::int32_t step) const {
    return steps_.getViewForStep(step);
}

std::shared_ptr<StepController> SetupController::getControllerForStep(std::int32_t step) const {
    return steps_.getControllerForStep(step);
}

std::shared_ptr<StepModel> SetupController::getModelForStep(std::int32_t step) const {
    return steps_.getModelForStep(step);
}

std::shared_ptr<StepIndicator> SetupController::getIndicatorForStep(std::int32_t step) const {
    return steps_.getIndicatorForStep(step);
}

// Navigation

void SetupController::nextView(const void* sender) {
    // A step lets the window handle events before it asks for the next step. If the user pressed
    // Continue meanwhile, the step has already been left, and its request must not skip another.
    if (steps_.isControllerOfAnotherStep(sender, stateController_->currentState())) return;
    stateController_->advanceStateWithStepController(currentController().get(), this);
}

void SetupController::previousView(const void* sender) {
    const auto controller = currentController();
    // Both abilities are needed: only a step with a button of its own can have opened a screen of
    // its own, from which Back returns.
    if (dynamic_cast<HasExtraButton*>(controller.get()) != nullptr) {
        if (auto* step = dynamic_cast<OverridesBackButton*>(controller.get())) {
            bool overridden = false;
            step->overrideBackButton(sender, overridden);
            if (overridden) return;
        }
    }
    stateController_->retreatStateWithStepController(controller.get(), this);
}

void SetupController::subViewButtonPress(const void* sender) {
    const auto controller = currentController();
    if (auto* step = dynamic_cast<HasExtraButton*>(controller.get())) step->buttonPressed(sender);
}

void SetupController::stateDidChange(const Notification& notification) {
    const auto* sender = static_cast<const InstallStateController*>(notification.sender);
    const std::int32_t newState = sender->currentState();
    const std::int32_t oldState = notification.userInformation.at(oldStateKey);
    if (newState == step_number::finished || newState == step_number::notStarted) {
        endWizard(newState);
        return;
    }
    isCopied_ = false;
    for (const char* property : stepProperties) willChange(property);
    swapSteps(oldState, newState);
    // Read after the steps were called, since the entered step may have changed the state.
    setGoBackwardsText(viewModel_->goBackwardsText());
    setGoForwardText(viewModel_->goForwardText());
    for (const char* property : stepProperties) didChange(property);
    closeIfAsked();
}

void SetupController::swapSteps(std::int32_t oldState, std::int32_t newState) {
    if (const auto indicator = getIndicatorForStep(oldState)) indicator->setCurrentStep(false);
    if (const auto indicator = getIndicatorForStep(newState)) indicator->setCurrentStep(true);
    const std::int32_t direction = newState - oldState;
    if (const auto left = getControllerForStep(oldState)) left->didProceed(direction);
    if (const auto entered = getControllerForStep(newState)) {
        entered->didEnterWithModel(getModelForStep(newState), getViewForStep(newState), this,
                                   direction);
    }
}

void SetupController::endWizard(std::int32_t state) {
    if (window_.mainWindow) window_.mainWindow->close();
    if (state != step_number::finished || !launchHelpURL_) return;
    // A failure is in the system log; the window that could show it is closed.
    static_cast<void>(platform_.workspace.openAddress(helpPageAddress(platform_.bundle)));
}

std::shared_ptr<StepController> SetupController::currentController() const {
    return getControllerForStep(stateController_->currentState());
}

bool SetupController::enableForward() const {
    const auto controller = currentController();
    return controller && controller->enableForward();
}

bool SetupController::enableBackward() const {
    const auto controller = currentController();
    return controller && controller->enableBackward();
}

void SetupController::setGoForwardText(const std::string& text) {
    willChange("goForwardText");
    goForwardText_ = text;
    didChange("goForwardText");
}

void SetupController::setGoBackwardsText(const std::string& text) {
    willChange("goBackwardsText");
    goBackwardsText_ = text;
    didChange("goBackwardsText");
}

void SetupController::announce(const char* property) {
    willChange(property);
    didChange(property);
}

// Hosts and the installation

bool SetupController::copyInProgress() const {
    return !installFilesController_->enableForward();
}

bool SetupController::successfulInstall() const {
    return installFilesController_->successfulInstall();
}

std::vector<HostModel> SetupController::foundHosts() const {
    return hostsModel_->foundHosts();
}

std::vector<HostModel> SetupController::selectedHosts() const {
    return selectedAmong(foundHosts());
}

void SetupController::customHostAdded(const HostModel& host) {
    willChange("foundHosts");
    hostsModel_->addHostAtRuntime(host);
    didChange("foundHosts");
    if (!window_.foundHostsController) return;
    const std::vector<HostModel> hosts = foundHosts();
    const auto row = std::distance(hosts.begin(), std::ranges::find(hosts, host));
    window_.foundHostsController->setSelectedRow(static_cast<std::size_t>(row));
}

void SetupController::customHostRemoved(const HostModel& host) {
    willChange("foundHosts");
    hostsModel_->removeHostAtRuntime(host);
    didChange("foundHosts");
}

void SetupController::checkHost(std::size_t row, bool checked) {
    const std::vector<HostModel> hosts = foundHosts();
    if (row >= hosts.size()) return;
    hosts[row].setHostIsSelected(checked);
    // A Photoshop that is ticked ends the custom install. Whoever ticks the folder again wants
    // both.
    if (checked && hosts[row].as<UnknownHostModel>() == nullptr) {
        for (const HostModel& host : hosts) {
            if (host.as<UnknownHostModel>() != nullptr) host.setHostIsSelected(false);
        }
    }
    hostsController_->checkboxClicked(this);
}

// Texts

std::string SetupController::mainLabelText() const {
    return mainLabelTextOf(currentModel().get());
}

PlainOrStyledText SetupController::informativeText() const {
    return informativeTextOf(currentModel().get());
}

StyledText SetupController::licenseText() const {
    return licenseTextOf(licenseModel_.get(), platform_.bundle);
}

StyledText SetupController::registerText() const {
    return rtfResource(platform_, "register").value_or(nilText());
}

std::shared_ptr<StepModel> SetupController::currentModel() const {
    return getModelForStep(stateController_->currentState());
}

// Options and menus

void SetupController::setIsCustomInstallAllowed(bool allowed) {
    setOption("isCustomInstallAllowed", customInstallAllowed_, allowed);
}

void SetupController::setCanConfigurePrismorExternalEditors(bool can) {
    setOption("canConfigurePrismorExternalEditors", configurePrismorExternalEditorsAllowed_, can);
}

void SetupController::setShouldConfigurePrismorExternalEditors(bool should) {
    setOption("shouldConfigurePrismorExternalEditors", configurePrismorExternalEditorsShould_,
              should);
}

void SetupController::setLaunchHelpURL(bool launch) {
    BundleUserDefaults(platform_, settingsDomain).setBool(launch, launchHelpKey);
    setOption("launchHelpURL", launchHelpURL_, launch);
}

void SetupController::setOption(const char* property, bool& option, bool value) {
    options_.willChange(property);
    option = value;
    options_.didChange(property);
}

void SetupController::customInstallMenu(const void* /*sender*/) {
    setIsCustomInstallAllowed(true);
}

void SetupController::showAbout() {
    // The alert has one button, so the answer is ignored.
    static_cast<void>(platform_.alerts.runModal(aboutAlert(platform_.bundle)));
}

void SetupController::hideWindow() {
    if (window_.mainWindow) window_.mainWindow->miniaturize();
}

void SetupController::quit() {
    if (window_.mainWindow && !copyInProgress()) window_.mainWindow->close();
}

void SetupController::endSoon() {
    endsSoon_ = true;
    closeIfAsked();
}

void SetupController::closeIfAsked() {
    if (!endsSoon_ || copyInProgress()) return;
    endsSoon_ = false;
    if (window_.mainWindow) window_.mainWindow->close();
}

bool SetupController::shouldChangeText(std::string_view replacement) {
    if (replacement == "\n") nextView(this);
    return false;
}

}  // namespace installer

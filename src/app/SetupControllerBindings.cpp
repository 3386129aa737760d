#include <array>
#include <variant>

#include "app/HostRows.h"
#include "app/SetupController.h"
#include "app/WindowTexts.h"
#include "foundation/text/Format.h"
#include "hosts/HostModel.h"
#include "ports/window/WindowPlatform.h"
#include "product/LocalizedText.h"
#include "steps/completion/RegisterModel.h"
#include "steps/hosts/HostsController.h"
#include "steps/running/RunningHostViewModel.h"
#include "wizard/InstallStateController.h"

// The names under which the description of the main window knows the controller's properties and
// actions.

namespace installer {

namespace {

PropertyValue asPropertyValue(const PlainOrStyledText& text) {
    return std::visit([](const auto& value) { return PropertyValue(value); }, text);
}

/// From so many on, people want to tick them all at once, or none.
constexpr std::size_t manyHosts = 4;

}  // namespace

void SetupController::bindTexts() {
    const Bundle& bundle = platform_.bundle;
    bindProperty("windowTitle", [&bundle] { return windowTitle(bundle); });
    bindProperty("aboutMenuText", [&bundle] { return aboutMenuText(bundle); });
    bindProperty("quitMenuText", [&bundle] { return quitMenuText(bundle); });
    bindProperty("hideMenuText", [&bundle] { return hideMenuText(bundle); });
    bindProperty("productName", [&bundle] { return productName(bundle); });
    struct LocalizedProperty {
        const char* name;
        const char* key;
    };
    for (const auto& [name, key] :
         {LocalizedProperty{"customInstallMenuText", "allow_custom"},
          LocalizedProperty{"customInstallButtonText", "custom_install_button"},
          LocalizedProperty{"registerNowText", "register_now"},
          LocalizedProperty{"launchHelpURLString", "launch_help_url_string"}}) {
        bindProperty(name, [&bundle, textKey = key] { return localizedText(bundle, textKey); });
    }
    bindProperty("mainLabelText", [this] { return mainLabelText(); });
    bindProperty("informativeText", [this] { return asPropertyValue(informativeText()); });
    bindProperty("licenseText", [this] { return licenseText(); });
    bindProperty("registerText", [this] { return registerText(); });
    bindProperty("goForwardText", [this] { return goForwardText(); });
    bindProperty("goBackwardsText", [this] { return goBackwardsText(); });
}

void SetupController::bindStates() {
    bindProperty("enableForward", [this] { return enableForward(); });
    bindProperty("enableBackward", [this] { return enableBackward(); });
    bindProperty("copyInProgress", [this] { return copyInProgress(); });
    bindProperty("canClose", [this] { return !copyInProgress(); });
    bindProperty("successfulInstall", [this] { return successfulInstall(); });
    bindProperty("backgroundImage", [this] { return backgroundImage(); });
    bindProperty("backgroundImageName", [this] { return backgroundImageName(); });
    bindList(
        "foundHosts", [this] { return hostRows(foundHosts(), platform_.workspace); },
        [this](std::size_t row, bool checked) { checkHost(row, checked); });
}

void SetupController::bindOptions() {
    bindProperty("isCustomInstallAllowed", [this] { return isCustomInstallAllowed(); });
    bindProperty("canConfigurePrismorExternalEditors",
                 [this] { return canConfigurePrismorExternalEditors(); });
    bindSwitch(
        "shouldConfigurePrismorExternalEditors",
        [this] { return shouldConfigurePrismorExternalEditors(); },
        [this](bool should) { setShouldConfigurePrismorExternalEditors(should); });
    bindSwitch(
        "launchHelpURL", [this] { return launchHelpURL(); },
        [this](bool launch) { setLaunchHelpURL(launch); });
}

void SetupController::bindPages() {
    bindProperty("pageText", [this] { return pageText(); });
    bindSwitch(
        "allHostsSelected", [this] { return allHostsSelected(); },
        [this](bool select) { selectAllHosts(select); });
    bindProperty("canSelectAllHosts", [this] { return foundHosts().size() >= manyHosts; });
    bindProperty("hostIsRunning", [this] { return hostsRunningModel_->hostIsRunning(); });
    bindProperty("waitingText", [this] {
        return localizedText(platform_.bundle, hostsRunningModel_->hostIsRunning()
                                                   ? "waiting_for_program"
                                                   : "program_has_closed");
    });
    bindProperty("outcomeText", [this] { return outcomeText(); });
    bindProperty("installedPlaces", [this] {
        // A run that succeeded has installed into every selected host.
        return successfulInstall() ? hostRows(selectedHosts(), platform_.workspace)
                                   : std::vector<ListRow>();
    });
}

void SetupController::bindFailureReport() {
    bindProperty("installationFailed", [this] { return installationFailed(); });
    bindProperty("authorizationReason", [this] { return authorizationReason(platform_.bundle); });
    bindProperty("failureReason", [this] { return failureReport_.failureReason(); });
    bindProperty("failedItems", [this] { return failureReport_.failedItems(); });
    bindProperty("hasFailedItems", [this] { return failureReport_.hasFailedItems(); });
    bindProperty("installerLogExists", [this] { return failureReport_.installerLogExists(); });
}

void SetupController::bindActions() {
    bindAction("nextView", [this](const void* sender) { nextView(sender); });
    bindAction("previousView", [this](const void* sender) { previousView(sender); });
    bindAction("subViewButtonPress", [this](const void* sender) { subViewButtonPress(sender); });
    bindAction("customInstallMenu", [this](const void* sender) { customInstallMenu(sender); });
    bindAction("showAbout", [this](const void* /*sender*/) { showAbout(); });
    bindAction("quit", [this](const void* /*sender*/) { quit(); });
    bindAction("hideWindow", [this](const void* /*sender*/) { hideWindow(); });
    bindAction("openInstallerLog",
               [this](const void* /*sender*/) { failureReport_.openInstallerLog(); });
    bindAction("copyInstallerLog",
               [this](const void* /*sender*/) { failureReport_.copyInstallerLog(); });
}

void SetupController::refreshWhatNobodyAnnounces() {
    static constexpr std::array<const char*, 16> properties = {
        "pageText",
        "hostIsRunning",
        "waitingText",
        "outcomeText",
        "installedPlaces",
        "backgroundImage",
        "backgroundImageName",
        "failedItems",
        "hasFailedItems",
        "failureReason",
        "installationFailed",
        "installerLogExists",
        "canClose",
        "canConfigurePrismorExternalEditors",
        "shouldConfigurePrismorExternalEditors",
        "isCustomInstallAllowed"};
    for (const char* property : properties) propertyDidChange(property);
}

void SetupController::refreshWhatFollowsFrom(std::string_view property) {
    if (property == "copyInProgress") propertyDidChange("canClose");
    if (property == "informativeText") propertyDidChange("pageText");
    if (property == "foundHosts") {
        propertyDidChange("canSelectAllHosts");
        propertyDidChange("allHostsSelected");
    }
    if (property == "enableForward") {
        // Another screen of the step, a ticked host, a program that has ended.
        for (const char* follower :
             {"pageText", "allHostsSelected", "hostIsRunning", "waitingText"})
            propertyDidChange(follower);
    }
}

PropertyValue SetupController::pageText() const {
    const bool isCustomScreen =
        stateController_->currentState() == step_number::hostSelection && customInstallChosen_;
    if (!isCustomScreen) return asPropertyValue(informativeText());
    const Bundle& bundle = platform_.bundle;
    return formatted(localizedText(bundle, "custom_install_instructions"), {productName(bundle)});
}

std::string SetupController::outcomeText() const {
    const Bundle& bundle = platform_.bundle;
    const char* format = successfulInstall() ? "outcome_success_fmt" : "outcome_failure_fmt";
    return formatted(localizedText(bundle, format), {productName(bundle)});
}

bool SetupController::allHostsSelected() const {
    return selectedHosts().size() == foundHosts().size();
}

void SetupController::selectAllHosts(bool select) {
    for (const HostModel& host : foundHosts()) host.setHostIsSelected(select);
    propertyDidChange("foundHosts");
    hostsController_->checkboxClicked(this);
}

Image SetupController::backgroundImage() const {
    const auto model = std::dynamic_pointer_cast<HasBackgroundImage>(currentModel());
    return model ? model->backgroundImage() : Image();
}

std::string SetupController::backgroundImageName() const {
    const auto model = std::dynamic_pointer_cast<RegisterModel>(currentModel());
    if (!model) return "";
    return localizedText(platform_.bundle, model->indicateFailure() ? "failure_picture_name"
                                                                    : "success_picture_name");
}

bool SetupController::installationFailed() const {
    // Until the run is over it has not failed, whatever the steps before it say.
    return stateController_->currentState() == step_number::completion && !successfulInstall();
}

}  // namespace installer

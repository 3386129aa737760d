#include <array>
#include <variant>

#include "app/HostRows.h"
#include "app/SetupController.h"
#include "app/WindowTexts.h"
#include "hosts/HostModel.h"
#include "ports/window/WindowPlatform.h"
#include "product/LocalizedText.h"
#include "steps/completion/RegisterModel.h"
#include "wizard/InstallStateController.h"

// The names under which the description of the main window knows the controller's properties and
// actions.

namespace installer {

namespace {

PropertyValue asPropertyValue(const PlainOrStyledText& text) {
    return std::visit([](const auto& value) { return PropertyValue(value); }, text);
}

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
    static constexpr std::array<const char*, 11> properties = {
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

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

/// Announced last in every change of step, and around the installation. So what is read with it is
/// read again in every step, and when the installation has ended.
constexpr const char* stepOrOutcome = "successfulInstall";

PropertyValue asPropertyValue(const PlainOrStyledText& text) {
    return std::visit([](const auto& value) { return PropertyValue(value); }, text);
}

}  // namespace

void SetupController::bindTexts() {
    const Bundle& bundle = platform_.bundle;
    bindProperty("windowTitle", [&bundle] { return windowTitle(bundle); });
    bindConstant("aboutMenuText", [&bundle] { return aboutMenuText(bundle); });
    bindConstant("quitMenuText", [&bundle] { return quitMenuText(bundle); });
    bindConstant("hideMenuText", [&bundle] { return hideMenuText(bundle); });
    bindConstant("productName", [&bundle] { return productName(bundle); });
    struct LocalizedProperty {
        const char* name;
        const char* key;
    };
    for (const auto& [name, key] :
         {LocalizedProperty{"customInstallMenuText", "allow_custom"},
          LocalizedProperty{"customInstallButtonText", "custom_install_button"},
          LocalizedProperty{"registerNowText", "register_now"},
          LocalizedProperty{"launchHelpURLString", "launch_help_url_string"}}) {
        bindConstant(name, [&bundle, textKey = key] { return localizedText(bundle, textKey); });
    }
    bindProperty("mainLabelText", [this] { return mainLabelText(); });
    bindProperty("informativeText", [this] { return asPropertyValue(informativeText()); });
    bindProperty("licenseText", [this] { return licenseText(); });
    bindConstant("registerText", [this] { return registerText(); });
    bindProperty("goForwardText", [this] { return goForwardText(); });
    bindProperty("goBackwardsText", [this] { return goBackwardsText(); });
}

void SetupController::bindStates() {
    bindProperty("enableForward", [this] { return enableForward(); });
    bindProperty("enableBackward", [this] { return enableBackward(); });
    bindProperty("copyInProgress", [this] { return copyInProgress(); });
    bindProperty("canClose", [this] { return !copyInProgress(); },
                 {"copyInProgress", stepOrOutcome});
    bindProperty("successfulInstall", [this] { return successfulInstall(); });
    bindProperty("backgroundImage", [this] { return backgroundImage(); }, {stepOrOutcome});
    bindProperty("backgroundImageName", [this] { return backgroundImageName(); }, {stepOrOutcome});
    bindList(
        "foundHosts", [this] { return hostRows(foundHosts(), platform_.workspace); },
        [this](std::size_t row, bool checked) { checkHost(row, checked); });
}

void SetupController::bindOptions() {
    // Setting an option makes the window read it again. So does every step: a control that the
    // user changed although its option can only be shown then shows the option's value.
    bindProperty("isCustomInstallAllowed", [this] { return isCustomInstallAllowed(); },
                 {stepOrOutcome});
    bindProperty("canConfigurePrismorExternalEditors",
                 [this] { return canConfigurePrismorExternalEditors(); }, {stepOrOutcome});
    bindSwitch(
        "shouldConfigurePrismorExternalEditors",
        [this] { return shouldConfigurePrismorExternalEditors(); },
        [this](bool should) { setShouldConfigurePrismorExternalEditors(should); }, {stepOrOutcome});
    bindSwitch(
        "launchHelpURL", [this] { return launchHelpURL(); },
        [this](bool launch) { setLaunchHelpURL(launch); });
}

void SetupController::bindFailureReport() {
    bindProperty("installationFailed", [this] { return installationFailed(); }, {stepOrOutcome});
    bindConstant("authorizationReason", [this] { return authorizationReason(platform_.bundle); });
    bindProperty("failureReason", [this] { return failureReport_.failureReason(); },
                 {stepOrOutcome});
    bindProperty("failedItems", [this] { return failureReport_.failedItems(); }, {stepOrOutcome});
    bindProperty("hasFailedItems", [this] { return failureReport_.hasFailedItems(); },
                 {stepOrOutcome});
    bindProperty("installerLogExists", [this] { return failureReport_.installerLogExists(); },
                 {stepOrOutcome});
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
    // Before the last step `successfulInstall` is false too, although nothing has failed.
    return stateController_->currentState() == step_number::completion && !successfulInstall();
}

}  // namespace installer

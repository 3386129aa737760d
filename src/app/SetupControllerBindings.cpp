#include <variant>

#include "app/SetupController.h"
#include "app/texts/HostRows.h"
#include "app/texts/HostsTexts.h"
#include "app/texts/ProgressTexts.h"
#include "app/texts/WindowTexts.h"
#include "foundation/text/Format.h"
#include "hosts/HostModel.h"
#include "ports/Alerts.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "product/CouldNotOpenAlert.h"
#include "product/LocalizedText.h"
#include "steps/completion/RegisterController.h"
#include "steps/completion/RegisterModel.h"
#include "steps/hosts/HostsController.h"
#include "steps/hosts/HostsModel.h"
#include "steps/install/InstallFilesController.h"
#include "steps/running/RunningHostViewController.h"
#include "steps/running/RunningHostViewModel.h"
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

/// From so many on, people want to tick them all at once, or none.
constexpr std::size_t manyHosts = 4;

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
    // Another screen of a step is announced with "enableForward".
    bindProperty("pageName", [this] { return pageName(); },
                 {"mainLabelText", "enableForward", stepOrOutcome});
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
        "foundHosts", [this] { return hostRows(foundHosts(), platform_); },
        [this](std::size_t row, bool checked) { checkHost(row, checked); });
}

void SetupController::bindOptions() {
    // Setting an option makes the window read it again. So does every step: a control that the
    // user changed although its option can only be shown then shows the option's value.
    bindProperty("isCustomInstallAllowed", [this] { return isCustomInstallAllowed(); },
                 {stepOrOutcome});
    bindSwitch(
        "allowsCustomInstall", [this] { return isCustomInstallAllowed(); },
        [this](bool allow) {
            // Nothing takes it back.
            if (allow) customInstallMenu(this);
        },
        {"isCustomInstallAllowed", stepOrOutcome});
    bindProperty("canAllowCustomInstall", [this] { return !isCustomInstallAllowed(); },
                 {"isCustomInstallAllowed", stepOrOutcome});
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

void SetupController::bindPages() {
    // "enableForward" is announced whenever another screen of the step is shown, a host is ticked,
    // or the last running program has ended.
    bindProperty("pageText", [this] { return pageText(); },
                 {"informativeText", "enableForward", "foundHosts", stepOrOutcome});
    bindSwitch(
        "allHostsSelected", [this] { return allHostsSelected(); },
        [this](bool select) { selectAllHosts(select); }, {"foundHosts", "enableForward"});
    bindProperty("canSelectAllHosts", [this] { return foundHosts().size() >= manyHosts; },
                 {"foundHosts", stepOrOutcome});
    bindProperty("selectionNote", [this] { return selectionNote(platform_, selectedHosts()); },
                 {"foundHosts", "enableForward", stepOrOutcome});
    bindProperty("spaceNote", [this] { return spaceNote(); },
                 {"foundHosts", "enableForward", stepOrOutcome});
    bindProperty("hostIsRunning", [this] { return hostsRunningModel_->hostIsRunning(); },
                 {"enableForward", stepOrOutcome});
    bindProperty("waitingText", [this] { return waitingText(); },
                 {"runningApplication", "enableForward", stepOrOutcome});
    bindProperty("runningApplicationName",
                 [this] { return hostsRunningController_->runningApplication(); },
                 {"runningApplication", "enableForward", stepOrOutcome});
    bindProperty("runningIcon", [this] { return runningIcon(); },
                 {"runningApplication", "enableForward", stepOrOutcome});
    bindConstant("notOfferedText",
                 [this] { return notOfferedText(platform_.bundle, hostsModel_->notOffered()); });
    bindProperty("showsOutcome",
                 [this] { return stateController_->currentState() == step_number::completion; },
                 {stepOrOutcome});
    bindProperty("outcomeText", [this] { return outcomeText(); }, {stepOrOutcome});
    bindProperty("noPhotoshopText", [this] { return noPhotoshopText(); }, {stepOrOutcome});
    bindProperty("showsOutcomeText", [this] { return noPhotoshopText().empty(); }, {stepOrOutcome});
    bindProperty("installedPlaces", [this] { return installedPlaces(); }, {stepOrOutcome});
}

void SetupController::bindProgress() {
    bindProperty("progressNote",
                 [this] {
                     return progressNote(platform_.bundle,
                                         installFilesController_->progressReport());
                 },
                 {"progressReport", stepOrOutcome});
    bindProperty("progressFile",
                 [this] { return progressFile(installFilesController_->progressReport()); },
                 {"progressReport", stepOrOutcome});
    bindProperty("authorizationReason",
                 [this] {
                     return installFilesController_->asksForRights()
                                ? authorizationReason(platform_.bundle)
                                : "";
                 },
                 {"asksForRights", stepOrOutcome});
}

void SetupController::bindFailureReport() {
    bindProperty("installationFailed", [this] { return installationFailed(); }, {stepOrOutcome});
    bindProperty("failureReason", [this] { return failureReport_.failureReason(); },
                 {stepOrOutcome});
    bindProperty("failedItems", [this] { return failureReport_.failedItems(); }, {stepOrOutcome});
    bindProperty("hasFailedItems", [this] { return failureReport_.hasFailedItems(); },
                 {stepOrOutcome});
    bindProperty("copiedNote",
                 [this] { return isCopied_ ? localizedText(platform_.bundle, "copied") : ""; },
                 {stepOrOutcome});
    bindProperty("installerLogExists", [this] { return failureReport_.installerLogExists(); },
                 {stepOrOutcome});
}

void SetupController::bindActions() {
    bindAction("nextView", [this](const void* sender) { nextView(sender); });
    bindAction("previousView", [this](const void* sender) { previousView(sender); });
    bindAction("subViewButtonPress", [this](const void* sender) { pressExtraButton(sender); });
    bindAction("customInstallMenu", [this](const void* sender) { customInstallMenu(sender); });
    bindAction("showAbout", [this](const void* /*sender*/) { showAbout(); });
    bindAction("quit", [this](const void* /*sender*/) { quit(); });
    bindAction("hideWindow", [this](const void* /*sender*/) { hideWindow(); });
    bindAction("openInstallerLog",
               [this](const void* /*sender*/) { failureReport_.openInstallerLog(); });
    bindAction("copyInstallerLog", [this](const void* /*sender*/) {
        if (failureReport_.copyInstallerLog()) confirmCopy();
    });
    bindAction("copyReport", [this](const void* /*sender*/) {
        failureReport_.copyReport();
        confirmCopy();
    });
}

void SetupController::pressExtraButton(const void* sender) {
    subViewButtonPress(sender);
    if (stateController_->currentState() != step_number::completion) return;
    const std::string& address = registerController_->unopenedAddress();
    if (!address.empty()) tellUnopened(address);
}

void SetupController::tellUnopened(const std::string& addressOrPath) {
    // The alert has one button, so the answer is ignored.
    static_cast<void>(
        platform_.alerts.runModal(couldNotOpenAlert(platform_.bundle, addressOrPath)));
}

void SetupController::confirmCopy() {
    setOption("copiedNote", isCopied_, true);
}

std::string SetupController::spaceNote() {
    // The payload is looked at on the page that shows it, and not before.
    if (stateController_->currentState() != step_number::hostSelection) return "";
    return spaceText(platform_.bundle, neededSpace_.of(selectedHosts(), foundHosts()));
}

PropertyValue SetupController::pageText() const {
    if (stateController_->currentState() != step_number::hostSelection) {
        return asPropertyValue(informativeText());
    }
    const Bundle& bundle = platform_.bundle;
    const std::string noneFound = noPhotoshopFoundText(bundle, foundHosts());
    if (!customInstallChosen_) {
        return noneFound.empty() ? asPropertyValue(informativeText()) : PropertyValue(noneFound);
    }
    const std::string instructions =
        formatted(localizedText(bundle, "custom_install_instructions"), {productName(bundle)});
    return noneFound.empty() ? instructions : noneFound + "\n\n" + instructions;
}

std::string SetupController::waitingText() const {
    const Bundle& bundle = platform_.bundle;
    if (!hostsRunningModel_->hostIsRunning()) return localizedText(bundle, "program_has_closed");
    const std::string& application = hostsRunningController_->runningApplication();
    if (application.empty()) return localizedText(bundle, "waiting_for_program");
    const std::string owner = platform_.workspace.faceOfRunningApplication(application).owner;
    if (owner.empty()) {
        return formatted(localizedText(bundle, "waiting_for_program_fmt"), {application});
    }
    return formatted(localizedText(bundle, "waiting_for_program_of_fmt"), {application, owner});
}

Image SetupController::runningIcon() const {
    const std::string& application = hostsRunningController_->runningApplication();
    if (!hostsRunningModel_->hostIsRunning() || application.empty()) return {};
    Image icon = platform_.workspace.faceOfRunningApplication(application).icon;
    if (!icon.path.empty()) return icon;
    // It is one of the hosts for which this page waits, and these have icons of their own.
    for (const HostModel& host : selectedHosts()) {
        const std::string word = RunningHostViewController::hostAppSearchString(host);
        if (!isApplicationOfHost(application, word)) continue;
        icon = platform_.workspace.iconOfFile(hostFolder(host));
        if (!icon.path.empty()) break;
    }
    return icon;
}

std::string SetupController::pageName() const {
    const Bundle& bundle = platform_.bundle;
    return formatted(localizedText(bundle, "page_name_fmt", "%3$@"),
                     {std::to_string(stateController_->currentState() + 1),
                      std::to_string(step_number::finished), pageTitle(), windowTitle(bundle)});
}

std::string SetupController::pageTitle() const {
    const std::int32_t step = stateController_->currentState();
    if (step == step_number::hostSelection && isCustomInstallChosen()) {
        return localizedText(platform_.bundle, "browse_path_title");
    }
    // Who only hears the window shall not have to look for how it went.
    const std::string outcome = step == step_number::completion ? outcomeText() : "";
    return outcome.empty() ? mainLabelText() : outcome;
}

std::vector<ListRow> SetupController::installedPlaces() const {
    if (!successfulInstall()) return {};
    return hostRows(installFilesController_->suppliedHosts(), platform_);
}

std::string SetupController::noPhotoshopText() const {
    if (!successfulInstall() || !installFilesController_->suppliedHosts().empty()) return "";
    return localizedText(platform_.bundle, "no_photoshop_used");
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
    willChange("foundHosts");
    for (const HostModel& host : foundHosts()) host.setHostIsSelected(select);
    didChange("foundHosts");
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
    // Before the last step `successfulInstall` is false too, although nothing has failed.
    return stateController_->currentState() == step_number::completion && !successfulInstall();
}

}  // namespace installer

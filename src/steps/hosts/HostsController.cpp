#include "steps/hosts/HostsController.h"

#include <string_view>
#include <utility>

#include "foundation/values/Paths.h"
#include "ports/FileManager.h"
#include "ports/SearchPaths.h"
#include "ports/window/FolderPanel.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/View.h"
#include "ports/window/WindowPlatform.h"
#include "product/LocalizedText.h"
#include "product/ProductFacts.h"
#include "steps/hosts/HostsModel.h"
#include "steps/hosts/RefusedFolder.h"
#include "wizard/MainController.h"

namespace installer {

namespace {

constexpr const char* customPathKey = "customPath";

void setHidden(const std::shared_ptr<View>& view, bool hidden) {
    if (view) view->setHidden(hidden);
}

}  // namespace

HostsController::HostsController(WindowPlatform& platform)
    : platform_(platform), defaults_(platform, settingsDomain) {
    bindControls();
    ownAnnouncements_ = follow(*this);
}

HostsController::~HostsController() = default;

void HostsController::bindControls() {
    const auto bindText = [this](const char* name, std::string (HostsController::*text)() const) {
        bindConstant(name, [this, text] { return PropertyValue((this->*text)()); });
    };
    bindProperty("customPath", [this] { return PropertyValue(customPath()); });
    bindProperty("customFolderNote", [this] { return PropertyValue(customFolderNote()); },
                 {"customPath"});
    // The screen is loaded, and its controls read these texts, while the model is there.
    bindText("customInstallPathLabelText", &HostsController::customInstallPathLabelText);
    bindText("customInstallBrowseButtonText", &HostsController::customInstallBrowseButtonText);
    bindText("customInstallCheckBoxText", &HostsController::customInstallCheckBoxText);
    bindText("customInstallHostsExplanationText",
             &HostsController::customInstallHostsExplanationText);
    // Only their own check boxes change these two, so nobody announces them.
    bindSwitch(
        "installScriptsAndPanelsChosen", [this] { return installScriptsAndPanelsChosen_; },
        [this](bool chosen) { setInstallScriptsAndPanelsChosen(chosen); });
    bindSwitch(
        "installPluginForCustomInstall", [this] { return installPluginForCustomInstall_; },
        [this](bool install) { setInstallPluginForCustomInstall(install); });
    bindConstant("scriptsOrPanelsHosts", [this] {
        std::vector<ListRow> rows;
        for (const HostModel& host : scriptsOrPanelsHosts()) {
            rows.push_back({.title = host.hostName()});
        }
        return PropertyValue(std::move(rows));
    });
    bindConstant("scriptsOrPanelsHostsExsist",
                 [this] { return PropertyValue(scriptsOrPanelsHostsExsist()); });
    bindAction("browseButtonPressed", [this](const void* sender) { browseButtonPressed(sender); });
}

bool HostsController::enableForward() const {
    if (isHostListCurrent()) return true;
    const UnknownHostModel* host = customFolderHost();
    const bool hasFolder = host != nullptr && !host->plugInPath().empty();
    if (installPluginForCustomInstall_ && !hasFolder) return false;
    const bool installsAnything = installScriptsAndPanelsChosen_ ||
                                  installPluginForCustomInstall_ ||
                                  installPlugin64ForCustomInstall_;
    return installsAnything && enableForward_;
}

void HostsController::didEnterWithModel(std::shared_ptr<StepModel> model,
                                        std::shared_ptr<View> view, MainController* mainController,
                                        std::int32_t /*direction*/) {
    model_ = std::dynamic_pointer_cast<HostsModel>(model);
    view_ = view;
    mainController_ = mainController;

    const std::vector<HostModel> found = mainController->foundHosts();
    if (found.empty() && !mainController->isCustomInstallAllowed() &&
        !mainController->customInstallRecommended()) {
        // The call leaves this step, which releases `view_`; hence the argument.
        mainController->nextView(this);
        setHidden(view, true);
        return;
    }
    const bool customHostOnly =
        found.size() == 1 && found.front().as<UnknownHostModel>() != nullptr;
    if (found.empty() || customHostOnly) {
        startWithCustomScreen();
    } else {
        showHostList();
    }
}

void HostsController::didProceed(std::int32_t /*direction*/) {
    setHidden(currentView_, true);
    if (mainController_ != nullptr) {
        for (const HostModel& host : mainController_->selectedHosts()) {
            if (auto* customHost = host.as<UnknownHostModel>()) finishCustomHost(*customHost);
        }
    }
    model_.reset();
    view_.reset();
}

void HostsController::finishCustomHost(UnknownHostModel& host) {
    // There are never scripts or panels to copy, so both flags are cleared even if chosen.
    host.setShouldInstallPanels(false);
    host.setShouldInstallScripts(false);
    // Switched off for this host, the plug-in stays off, on purpose: the box that is switched on
    // again only counts for a custom folder that is made anew.
    if (!installPluginForCustomInstall_) host.setShouldInstallPlugIns(false);
    defaults_.setObject(host.plugInPath(), customPathKey);
}

void HostsController::showHostList() {
    setHidden(view_, false);
    currentView_ = view_;
    setHidden(customInstallView_, true);
}

void HostsController::startWithCustomScreen() {
    if (customInstallView_ && customHost_) {
        showCustomScreen();
        return;
    }
    // The host list is shown first: it stays if the custom screen cannot be loaded.
    showHostList();
    goToCustomScreen();
}

void HostsController::showCustomScreen() {
    currentView_ = customInstallView_;
    setHidden(view_, true);
    setHidden(customInstallView_, false);
}

void HostsController::buttonPressed(const void* /*sender*/) {
    goToCustomScreen();
}

void HostsController::goToCustomScreen() {
    willChangeEnableForward();
    if (!customHost_) addCustomHost();
    selectCustomHostAgain();
    didChangeEnableForward();
    if (mainController_ != nullptr) mainController_->setIsCustomInstallChosen(true);
    proceedInBranch(1);
}

void HostsController::addCustomHost() {
    if (mainController_ == nullptr) return;
    UnknownHostModel host(platform_, defaults_.stringForKey(customPathKey).value_or(""));
    host.setHostIsSelected(true);
    for (const HostModel& found : mainController_->foundHosts()) found.setHostIsSelected(false);
    customHost_ = HostModel(std::move(host));
    mainController_->customHostAdded(*customHost_);
}

/// The user has unticked its row, and comes back to its page: the page says that the folder will be
/// installed into.
void HostsController::selectCustomHostAgain() {
    const UnknownHostModel* host = customFolderHost();
    if (mainController_ == nullptr || host == nullptr || host->hostIsSelected()) return;
    for (const HostModel& found : mainController_->foundHosts()) {
        found.setHostIsSelected(customHost_ && found == *customHost_);
    }
}

void HostsController::undoCustomScreen() {
    if (mainController_ == nullptr) return;
    const std::vector<HostModel> found = mainController_->foundHosts();
    if (const auto customHost = customHost_) mainController_->customHostRemoved(*customHost);
    customHost_.reset();
    for (const HostModel& host : found) host.setHostIsSelected(true);
    proceedInBranch(1);
}

UnknownHostModel* HostsController::customFolderHost() const {
    return customHost_ ? customHost_->as<UnknownHostModel>() : nullptr;
}

void HostsController::overrideBackButton(const void* /*sender*/, bool& overridden) {
    overridden = !isHostListCurrent();
    if (overridden) undoCustomScreen();
}

bool HostsController::willBranch(std::int32_t direction) const {
    if (!customHost_) return false;
    return isHostListCurrent() ? direction > 0 : direction < 0;
}

void HostsController::proceedInBranch(std::int32_t /*direction*/) {
    willChange("customPath");
    willChange("customPath64");
    willChangeEnableForward();
    if (!isHostListCurrent()) {
        showHostList();
        if (mainController_ != nullptr) mainController_->setIsCustomInstallChosen(false);
    } else {
        // Deliberate: without the other screen nothing has changed, so the did-change calls are
        // left out and no control reads its property again.
        if (!customInstallView_ && !loadCustomScreen()) return;
        showCustomScreen();
    }
    didChange("customPath");
    didChange("customPath64");
    didChangeEnableForward();
}

bool HostsController::loadCustomScreen() {
    if (scriptsOrPanelsHosts().empty()) installScriptsAndPanelsChosen_ = false;
    auto interface = platform_.interfaces.load("CustomInstall", *this);
    if (!interface) return false;
    customInstallView_ = interface->view(customInstallViewPart);
    if (!customInstallView_) return false;
    scriptsOrPanelsArrayController_ = interface->list(hostsListPart);
    customInstall_ = std::move(interface);
    if (const auto parent = view_ ? view_->superview() : nullptr) {
        parent->addSubview(customInstallView_);
    }
    return true;
}

void HostsController::browseButtonPressed(const void* /*sender*/) {
    const std::optional<std::string> folder = platform_.folderPanel.runModal(folderRequest());
    if (!folder) return;
    willChange("customPath");
    willChangeEnableForward();
    if (UnknownHostModel* host = customFolderHost()) host->setPlugInPath(*folder);
    didChange("customPath");
    didChangeEnableForward();
}

FolderRequest HostsController::folderRequest() const {
    const UnknownHostModel* host = customFolderHost();
    const bool hasFolder = host != nullptr && !host->plugInPath().empty();
    return {
        .title = localizedText(platform_.bundle, "browse_path_title"),
        .message = localizedText(platform_.bundle, "browse_path_msg"),
        .prompt = localizedText(platform_.bundle, "browse_path_prompt"),
        .startFolder =
            hasFolder ? host->plugInPath() : platform_.searchPaths.homeFolder().value_or(""),
        .shouldShow = [this](const std::string& path) { return panelShouldShowFilename(path); }};
}

bool HostsController::panelShouldShowFilename(const std::string& path) const {
    const Result<FileAttributes> item = platform_.files.attributes(path);
    if (!item) return false;
    const FileType type = item.value().type;
    // Only listing it shows whether a link leads to a folder.
    const bool isFolder =
        type == FileType::folder ||
        (type == FileType::symbolicLink && static_cast<bool>(platform_.files.list(path)));
    return isFolder && !platform_.files.exists(joinPath(path, "Contents"));
}

void HostsController::checkboxClicked(const void* /*sender*/) {
    willChangeEnableForward();
    didChangeEnableForward();
    if (mainController_ == nullptr || !mainController_->isCustomInstallChosen()) return;
    mainController_->setIsCustomInstallChosen(false);
    mainController_->setIsCustomInstallAllowed(false);
}

std::vector<HostModel> HostsController::scriptsOrPanelsHosts() const {
    if (!installScriptsAndPanelsChosen_ || !model_) return {};
    return model_->scriptsOrPanelsHosts();
}

std::string HostsController::customPath() const {
    const UnknownHostModel* host = customFolderHost();
    return host != nullptr && installPluginForCustomInstall_ ? host->plugInPath() : "";
}

std::string HostsController::customFolderNote() const {
    const std::string folder = customPath();
    if (folder.empty()) return "";
    const LinkRefusal refusal = platform_.authorizations.linkRefusal(folder);
    if (refusal != LinkRefusal::none) {
        return refusedFolderText(platform_.bundle, refusal, lastPathComponent(folder));
    }
    const bool isMissing =
        platform_.files.list(folder).error() == std::errc::no_such_file_or_directory;
    return isMissing ? localizedText(platform_.bundle, "custom_folder_missing") : "";
}

void HostsController::setInstallScriptsAndPanelsChosen(bool chosen) {
    willChangeEnableForward();
    installScriptsAndPanelsChosen_ = chosen;
    didChangeEnableForward();
}

void HostsController::setInstallPluginForCustomInstall(bool install) {
    willChangeEnableForward();
    installPluginForCustomInstall_ = install;
    didChangeEnableForward();
    willChange("customPath");
    didChange("customPath");
}

std::string HostsController::customInstallPathLabelText() const {
    return model_ ? model_->customInstallPathLabelText() : "";
}

std::string HostsController::customInstallBrowseButtonText() const {
    return model_ ? model_->customInstallBrowseButtonText() : "";
}

std::string HostsController::customInstallButtonText() const {
    return model_ ? model_->customInstallButtonText() : "";
}

std::string HostsController::customInstallCheckBoxText() const {
    return model_ ? model_->customInstallCheckBoxText() : "";
}

std::string HostsController::customInstallHostsExplanationText() const {
    return model_ ? model_->customInstallHostsExplanationText() : "";
}

void HostsController::willChangeEnableForward() {
    if (mainController_ != nullptr) mainController_->willChange("enableForward");
}

void HostsController::didChangeEnableForward() {
    if (mainController_ != nullptr) mainController_->didChange("enableForward");
}

}  // namespace installer

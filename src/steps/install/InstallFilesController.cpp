#include "steps/install/InstallFilesController.h"

#include <cstddef>
#include <initializer_list>
#include <utility>

#include "hosts/HostModel.h"
#include "install/after/EarlierCopies.h"
#include "install/after/ExternalEditorList.h"
#include "install/after/InstallIdentifier.h"
#include "install/after/InstallerLog.h"
#include "install/after/ManifestCleaner.h"
#include "install/engine/DiskMirror.h"
#include "install/engine/HostPayload.h"
#include "install/engine/PlannedCopies.h"
#include "install/plan/InstallPlan.h"
#include "install/plan/PayloadWarnings.h"
#include "install/plan/PlannedWrites.h"
#include "ports/EventLoop.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "ports/window/View.h"
#include "product/LocalizedText.h"
#include "steps/install/InstallFilesModel.h"
#include "wizard/MainController.h"

namespace installer {

InstallFilesController::InstallFilesController(Platform& platform)
    : platform_(platform),
      run_(platform.searchPaths),
      commands_(platform, run_),
      folders_(platform, run_, commands_),
      errors_(platform, run_),
      installer_(platform, run_, commands_, folders_, errors_,
                 [this](const std::string& text) { setUIText(text); }) {
    run_.onAsking = [this](bool asks) { setAsksForRights(asks); };
}

bool InstallFilesController::canProceed(std::int32_t /*direction*/) {
    return !copyInProgress_;
}

void InstallFilesController::didProceed(std::int32_t direction) {
    model_.reset();
    if (view_) view_->setHidden(true);
    view_.reset();
    if (direction < 0) setInstallComplete(false);
}

void InstallFilesController::didEnterWithModel(std::shared_ptr<StepModel> model,
                                               std::shared_ptr<View> view,
                                               MainController* mainController,
                                               std::int32_t direction) {
    model_ = std::dynamic_pointer_cast<InstallFilesModel>(model);
    view_ = std::move(view);
    if (view_) view_->setHidden(false);
    mainController_ = mainController;
    if (direction < 1 || mainController_ == nullptr) return;

    install(mainController_->selectedHosts(),
            mainController_->shouldConfigurePrismorExternalEditors());
    willChange({"successfulInstall"});
    setInstallComplete(!run_.fileOpErrorOccurred);
    // Takes the place of a text about refused rights, on purpose: the next step tells how it went.
    setUIText(localizedText(platform_.bundle, "done"));
    setInProgress(false);
    run_.setAuthorization(nullptr);
    mainController_->nextView(this);
    didChange({"successfulInstall"});
}

bool InstallFilesController::successfulInstall() const {
    return installComplete_ && !run_.authDenied;
}

void InstallFilesController::setProgressIndicator(ProgressIndicator* indicator) {
    run_.setProgress(nullptr);
    progress_.reset();
    if (indicator == nullptr) return;
    progress_.emplace(*indicator, platform_.clock).onReport([this] {
        progressChanges_.willChange("progressReport");
        progressChanges_.didChange("progressReport");
    });
    run_.setProgress(&*progress_);
}

void InstallFilesController::install(const std::vector<HostModel>& hosts,
                                     bool shouldConfigurePrismorExternalEditors) {
    if (!beginRun(hosts)) return;
    InstallPlan plan = makePlan(hosts);
    run_.limitTo(plannedWrites(platform_, plan));
    logPayloadWarnings(plan, platform_.log);
    if (!plan.items.empty()) platform_.files.expectCopies(plannedCopies(plan, run_));
    DiskMirror(platform_, commands_, installer_).installFiles(plan.mirrorItems());
    if (shouldConfigurePrismorExternalEditors) configurePrismorExternalEditors();
    cleanManifests();
    runLsregister();
    installHosts(plan);
    endRun(plan);
}

void InstallFilesController::installForFurtherUser(const std::vector<HostModel>& hosts,
                                                   std::vector<std::string> installedBefore) {
    if (!beginRun(hosts)) return;
    run_.installedPaths = std::move(installedBefore);
    InstallPlan plan = makePlan(hosts);
    run_.limitTo(plannedWrites(platform_, plan));
    DiskMirror(platform_, commands_, installer_).registerApplications(plan.mirrorItems());
    cleanManifests();
    installHosts(plan);
    endRun(plan);
}

/// Whether the run can go on.
bool InstallFilesController::beginRun(const std::vector<HostModel>& hosts) {
    setInstallComplete(false);
    setInProgress(true);
    run_.begin();
    logIsWritten_ = false;
    authorizationFailed_ = false;
    trouble_ = AuthorizationTrouble::none;
    suppliedHosts_.clear();
    leftOutHosts_ = hosts;
    return obtainAuthorization();
}

void InstallFilesController::installHosts(const InstallPlan& plan) {
    for (std::size_t host = 0; host < plan.hosts.size(); ++host) {
        if (run_.fileOpErrorOccurred || run_.authDenied) break;
        leftOutHosts_.erase(leftOutHosts_.begin());
        const std::size_t before = run_.installedPaths.size();
        HostPayload(platform_, installer_).installFiles(plan.itemsOf(host));
        if (run_.installedPaths.size() > before) suppliedHosts_.push_back(plan.hosts[host]);
    }
}

void InstallFilesController::endRun(InstallPlan& plan) {
    platform_.files.expectCopies({});
    // Nobody asks for them any more, and the list of what was installed takes as much memory.
    plan.items.clear();
    plan.items.shrink_to_fit();
    reportRefusedItems(plan);
    logInstalledPaths();
    const bool isComplete = !run_.fileOpErrorOccurred && !run_.authDenied;
    if (progress_ && isComplete) progress_->complete();
}

/// Last, since an item that was not installed keeps the later hosts from being installed into.
void InstallFilesController::reportRefusedItems(const InstallPlan& plan) {
    run_.trouble = {.shown = localizedText(platform_.bundle, "system_folder"),
                    .logged = "a folder of the system"};
    for (const PlannedItem& item : plan.refused) errors_.showFileErrorUI(item.destination);
}

/// The plan, from one look at the payload. The progress starts with its bytes.
InstallPlan InstallFilesController::makePlan(const std::vector<HostModel>& hosts) {
    if (progress_) progress_->begin(0, 0);
    InstallPlan plan = makeInstallPlan(platform_, hosts, progress_ ? &*progress_ : nullptr);
    if (progress_) progress_->begin(plan.totalBytes(), plan.items.size());
    run_.installedPaths.reserve(run_.installedPaths.size() + plan.items.size());
    return plan;
}

bool InstallFilesController::obtainAuthorization() {
    if (run_.authorization) return true;
    auto authorization = platform_.authorizations.create();
    if (authorization && authorization->obtain(Authorization::extendRights)) {
        run_.setAuthorization(std::move(authorization));
        return true;
    }
    platform_.log.log("SFAuthorization permit with rights error");
    authorizationFailed_ = true;
    if (authorization) trouble_ = authorization->trouble();
    authorization.reset();
    setUIText(localizedText(platform_.bundle, "auth_error"));
    setInstallComplete(false);
    run_.fileOpErrorOccurred = true;
    return false;
}

void InstallFilesController::setInProgress(bool inProgress) {
    static constexpr std::initializer_list<const char*> properties = {
        "enableForward", "enableBackward", "canProceed", "copyInProgress"};
    willChange(properties);
    copyInProgress_ = inProgress;
    didChange(properties);
    platform_.eventLoop.runUntilNow();
}

void InstallFilesController::setUIText(const std::string& text) {
    static constexpr std::initializer_list<const char*> properties = {"informativeText",
                                                                      "mainLabelText"};
    willChange(properties);
    if (model_) model_->setInformativeText(text);
    didChange(properties);
    platform_.eventLoop.runUntilNow();
}

/// The question blocks this thread, so the reason for it is painted before.
void InstallFilesController::setAsksForRights(bool asks) {
    progressChanges_.willChange("asksForRights");
    asksForRights_ = asks;
    progressChanges_.didChange("asksForRights");
    if (asks) platform_.eventLoop.runUntilNow();
}

void InstallFilesController::willChange(std::initializer_list<const char*> properties) {
    if (mainController_ == nullptr) return;
    for (const char* property : properties) mainController_->willChange(property);
}

void InstallFilesController::didChange(std::initializer_list<const char*> properties) {
    if (mainController_ == nullptr) return;
    for (const char* property : properties) mainController_->didChange(property);
}

void InstallFilesController::installFiles() {
    DiskMirror(platform_, commands_, installer_).installFiles();
}

void InstallFilesController::installFiles(const HostModel& host) {
    HostPayload(platform_, installer_).installFiles(host);
}

void InstallFilesController::configurePrismorExternalEditors() {
    // Without a window nobody keeps a list of found hosts; the other editors are listed all the
    // same.
    const auto foundHosts =
        mainController_ == nullptr ? std::vector<HostModel>() : mainController_->foundHosts();
    ExternalEditorList(platform_, run_, folders_).configurePrismorExternalEditors(foundHosts);
}

void InstallFilesController::cleanManifests() {
    ManifestCleaner(platform_).cleanManifests();
}

void InstallFilesController::runLsregister() {
    commands_.runLsregister();
}

void InstallFilesController::logInstalledPaths() {
    logIsWritten_ = InstallerLog(platform_, run_, commands_).logInstalledPaths();
}

void InstallFilesController::installSourceFiles(const std::vector<std::string>& sources,
                                                const std::string& toPath, bool isBundle,
                                                bool alwaysInstall) {
    installer_.installSourceFiles(sources, toPath, isBundle, alwaysInstall);
}

void InstallFilesController::copyHostFilesFrom(const std::string& source, const std::string& to) {
    HostPayload(platform_, installer_).copyHostFilesFrom(source, to);
}

void InstallFilesController::ensureDirExists(const std::string& path) {
    folders_.ensureDirExists(path);
}

void InstallFilesController::setAttributesRecursive(const std::string& path,
                                                    const FileAttributeChanges& attributes) {
    folders_.setAttributesRecursive(path, attributes);
}

std::optional<DecimalNumber> InstallFilesController::versionFromBundle(const Bundle& bundle) {
    return ReplaceDecision::versionFromBundle(bundle);
}

bool InstallFilesController::isFileOkToInstallByBundleVersion(
    const std::string& source, const std::string& alreadyThere) const {
    return ReplaceDecision(platform_).isFileOkToInstallByBundleVersion(source, alreadyThere);
}

bool InstallFilesController::isFileOkToInstallByModificationTime(
    const std::string& source, const std::string& alreadyThere) const {
    return ReplaceDecision(platform_).isFileOkToInstallByModificationTime(source, alreadyThere);
}

bool InstallFilesController::isFatalAuthCode(std::uint32_t code) {
    return installer::isFatalAuthCode(code);
}

void InstallFilesController::showFileErrorUI(const std::string& path) {
    errors_.showFileErrorUI(path);
}

bool InstallFilesController::fileManagerShouldProceedAfterError(const std::string& error,
                                                                const std::string& path) {
    return errors_.fileManagerShouldProceedAfterError(error, path);
}

void InstallFilesController::unInstallForHost(const HostModel& host) {
    // No plan holds them, so somebody has to agree to their removal too.
    WriteGrant grant = run_.grant;
    addEarlierCopies(platform_, host, grant);
    run_.limitTo(std::move(grant));
    EarlierCopies(platform_, commands_).unInstallForHost(host);
}

void InstallFilesController::installAnalytics() {
    InstallIdentifier(platform_, commands_).installAnalytics();
}

}  // namespace installer

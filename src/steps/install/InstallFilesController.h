#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/observers/Observable.h"
#include "hosts/HostModel.h"
#include "install/engine/DecimalNumber.h"
#include "install/engine/DestinationFolders.h"
#include "install/engine/FileErrorAlerts.h"
#include "install/engine/FileInstaller.h"
#include "install/engine/ReplaceDecision.h"
#include "install/rights/PrivilegedCommands.h"
#include "install/run/InstallProgress.h"
#include "install/run/InstallRun.h"
#include "ports/Authorization.h"
#include "wizard/StepController.h"

namespace installer {

class Bundle;
class InstallFilesModel;
struct FileAttributeChanges;
struct InstallPlan;

/// The install step: runs the installation as soon as it is entered going forward, and moves on
/// by itself when the run is over. `install` does the same run without a window; then there is no
/// main controller, and announcements go nowhere. Main thread only.
class InstallFilesController : public StepController, public HasInstallOutcome {
  public:
    /// `platform` outlives this object.
    explicit InstallFilesController(Platform& platform);

    // The step. While a run is going on no button may be pressed and no move is possible.
    [[nodiscard]] bool enableForward() const override { return !copyInProgress_; }
    [[nodiscard]] bool enableBackward() const override { return !copyInProgress_; }
    [[nodiscard]] bool canProceed(std::int32_t direction) override;
    void didProceed(std::int32_t direction) override;
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;
    /// The last run has ended without a failed item and without a refusal.
    [[nodiscard]] bool successfulInstall() const override;

    [[nodiscard]] bool copyInProgress() const { return copyInProgress_; }
    [[nodiscard]] bool installComplete() const { return installComplete_; }
    [[nodiscard]] bool authDenied() const { return run_.authDenied; }
    [[nodiscard]] bool fileOpErrorOccurred() const { return run_.fileOpErrorOccurred; }
    [[nodiscard]] const std::vector<std::string>& installedPaths() const {
        return run_.installedPaths;
    }

    /// Whether the installer log lists the items of the last run.
    [[nodiscard]] bool installerLogIsWritten() const { return logIsWritten_; }

    /// The destinations of the items that could not be installed in the last run, in that order,
    /// each once.
    [[nodiscard]] const std::vector<std::string>& failedPaths() const { return run_.failedPaths; }

    /// Why each of them failed, by path, as far as that is known.
    [[nodiscard]] const std::map<std::string, Trouble>& failureReasons() const {
        return run_.failureReasons;
    }

    /// The hosts into which the last run has put at least one item, in its order.
    [[nodiscard]] const std::vector<HostModel>& suppliedHosts() const { return suppliedHosts_; }
    /// The hosts that the last run did not get to, because something had failed before.
    [[nodiscard]] const std::vector<HostModel>& leftOutHosts() const { return leftOutHosts_; }

    /// The last run had no way to administrator rights, and has installed nothing.
    [[nodiscard]] bool authorizationFailed() const { return authorizationFailed_; }
    [[nodiscard]] AuthorizationTrouble authorizationTrouble() const { return trouble_; }

    /// Shows how far a run has come, by the bytes of all its copies, the user's and the
    /// administrator's, and is told so from time to time while they take long. Nobody is told
    /// when it is null. Not owned.
    void setProgressIndicator(ProgressIndicator* indicator);

    /// What can be said of the run that goes on; nothing without a progress indicator.
    [[nodiscard]] ProgressReport progressReport() const {
        return progress_ ? progress_->report() : ProgressReport();
    }
    /// Somebody is being asked for administrator rights now, or may be.
    [[nodiscard]] bool asksForRights() const { return asksForRights_; }
    /// Announces "progressReport" and "asksForRights".
    [[nodiscard]] Observable& progressChanges() { return progressChanges_; }

    /// One run in its fixed order: the disk mirror, the external editors when they are asked for,
    /// the stale manifests, the application database, the hosts in list order, the installer log.
    /// After the first failed item or a refusal no further host is installed. Leaves
    /// `copyInProgress` true and the authorization in place: the step ends both.
    void install(const std::vector<HostModel>& hosts, bool shouldConfigurePrismorExternalEditors);

    /// The part of such a run that is another user's own, after a run for a first user has
    /// installed the items of the machine: those applications in this user's menus, this user's
    /// manifests and hosts. The installer log then lists `installedBefore`, too.
    void installForFurtherUser(const std::vector<HostModel>& hosts,
                               std::vector<std::string> installedBefore);

    /// Announces the change, and turns the event loop once so that the buttons show it.
    void setInProgress(bool inProgress);
    void setInstallComplete(bool complete) { installComplete_ = complete; }
    /// Shows the text as the step's explanation, at once.
    void setUIText(const std::string& text);

    // What a run consists of; each is explained where it is done.
    void installFiles();
    void installFiles(const HostModel& host);
    void configurePrismorExternalEditors();
    void cleanManifests();
    void runLsregister();
    void logInstalledPaths();
    void installSourceFiles(const std::vector<std::string>& sources, const std::string& toPath,
                            bool isBundle, bool alwaysInstall);
    void copyHostFilesFrom(const std::string& source, const std::string& to);
    void ensureDirExists(const std::string& path);
    void setAttributesRecursive(const std::string& path, const FileAttributeChanges& attributes);
    [[nodiscard]] static std::optional<DecimalNumber> versionFromBundle(const Bundle& bundle);
    [[nodiscard]] bool isFileOkToInstallByBundleVersion(const std::string& source,
                                                        const std::string& alreadyThere) const;
    [[nodiscard]] bool isFileOkToInstallByModificationTime(const std::string& source,
                                                           const std::string& alreadyThere) const;
    [[nodiscard]] static bool isFatalAuthCode(std::uint32_t code);
    void showFileErrorUI(const std::string& path);
    [[nodiscard]] bool fileManagerShouldProceedAfterError(const std::string& error,
                                                          const std::string& path);

    // What a run may do besides; today's run does neither. As all the others they need the run's
    // authorization: outside of a run their commands are refused.
    /// For each host that is installed to, before its files are copied.
    void unInstallForHost(const HostModel& host);
    void installAnalytics();

  private:
    [[nodiscard]] bool obtainAuthorization();
    [[nodiscard]] bool beginRun(const std::vector<HostModel>& hosts);
    void installHosts(const InstallPlan& plan);
    /// Takes the plan's items away: they are done.
    void endRun(InstallPlan& plan);
    void reportRefusedItems(const InstallPlan& plan);
    [[nodiscard]] InstallPlan makePlan(const std::vector<HostModel>& hosts);
    void willChange(std::initializer_list<const char*> properties);
    void didChange(std::initializer_list<const char*> properties);
    void setAsksForRights(bool asks);

    Platform& platform_;
    std::optional<InstallProgress> progress_;
    InstallRun run_;  ///< tells `progress_` until its authorization is gone
    PrivilegedCommands commands_;
    DestinationFolders folders_;
    FileErrorAlerts errors_;
    FileInstaller installer_;

    bool copyInProgress_ = false;
    bool installComplete_ = false;
    bool logIsWritten_ = false;
    bool authorizationFailed_ = false;
    bool asksForRights_ = false;
    Observable progressChanges_;
    AuthorizationTrouble trouble_ = AuthorizationTrouble::none;
    std::vector<HostModel> suppliedHosts_;
    std::vector<HostModel> leftOutHosts_;
    std::shared_ptr<InstallFilesModel> model_;
    std::shared_ptr<View> view_;
    MainController* mainController_ = nullptr;
};

}  // namespace installer

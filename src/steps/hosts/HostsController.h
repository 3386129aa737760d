#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/observers/Observable.h"
#include "foundation/observers/Subscription.h"
#include "hosts/HostModel.h"
#include "product/BundleUserDefaults.h"
#include "wizard/BoundObject.h"
#include "wizard/StepController.h"

namespace installer {

class HostsModel;
class Interface;
class ListSelection;
struct FolderRequest;
struct WindowPlatform;

/// The host-selection step. It has two screens: the list of the hosts that were found, and the
/// custom install, where the user picks any folder to receive the plug-in. While the custom install
/// is in use, its folder is a host in the list and the only selected one. Announces changes of
/// "enableForward" on the main controller, and those of its own properties on itself. Main thread
/// only.
class HostsController : public StepController,
                        public HasExtraButton,
                        public OverridesBackButton,
                        public Observable,
                        public BoundObject {
  public:
    // The parts of the description "CustomInstall" on which this object acts itself. Without the
    // view the screen is not shown.
    static constexpr const char* customInstallViewPart = "customInstallView";
    static constexpr const char* hostsListPart = "scriptsOrPanelsArrayController";

    /// The platform outlives this object.
    explicit HostsController(WindowPlatform& platform);
    ~HostsController() override;

    /// Always true on the host list. The custom install needs something to install and, for the
    /// plug-in, a folder.
    [[nodiscard]] bool enableForward() const override;
    [[nodiscard]] bool enableBackward() const override { return enableBackward_; }
    [[nodiscard]] bool canProceed(std::int32_t /*direction*/) override { return true; }
    /// Remembers the selected custom folder for the next run, and sets the folder's flags of what
    /// to install. The flags are not in force: no part of the installation reads them.
    void didProceed(std::int32_t direction) override;
    /// Shows the custom install at once if the list is empty or has only the custom folder's host.
    /// If the list is empty and the custom install is neither allowed nor recommended, goes to the
    /// next step, whatever the direction.
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;
    void buttonPressed(const void* sender) override;
    /// On the custom install: returns to the host list and consumes the press.
    void overrideBackButton(const void* sender, bool& overridden) override;

    /// Adds a host for the custom folder, the only selected one, and shows the custom install. If
    /// its interface cannot be loaded, the host list stays on screen and the host is added anyway.
    void goToCustomScreen();
    /// Removes the custom folder's host, selects all others and shows the host list.
    void undoCustomScreen();

    /// Whether going in that direction changes the screen within this step.
    [[nodiscard]] bool willBranch(std::int32_t direction) const;
    /// Switches to the other screen, whatever the direction.
    void proceedInBranch(std::int32_t direction);

    /// Lets the user pick the custom folder.
    void browseButtonPressed(const void* sender);
    /// Whether the folder panel shows the item: a folder, or a link to one, without an item named
    /// "Contents".
    [[nodiscard]] bool panelShouldShowFilename(const std::string& path) const;

    /// Called when the user has checked or unchecked a host. If a custom install was chosen, that
    /// ends it and disallows it for the rest of the run.
    void checkboxClicked(const void* sender);

    /// The screen that is shown, or was shown last. Null before the first entry.
    [[nodiscard]] std::shared_ptr<View> currentView() const { return currentView_; }

    /// The hosts whose scripts and panels a custom install could copy: always empty.
    [[nodiscard]] std::vector<HostModel> scriptsOrPanelsHosts() const;
    /// Always false. The interface descriptions use this misspelt name.
    [[nodiscard]] bool scriptsOrPanelsHostsExsist() const { return false; }
    /// The folder that receives the plug-in. Empty if none is chosen, or if the plug-in is not to
    /// be installed.
    [[nodiscard]] std::string customPath() const;

    /// A text if the custom folder does not exist; the installation makes it. Else empty.
    [[nodiscard]] std::string customFolderNote() const;

    [[nodiscard]] bool installScriptsAndPanelsChosen() const {
        return installScriptsAndPanelsChosen_;
    }
    void setInstallScriptsAndPanelsChosen(bool chosen);
    [[nodiscard]] bool installPluginForCustomInstall() const {
        return installPluginForCustomInstall_;
    }
    void setInstallPluginForCustomInstall(bool install);

    // The model's texts; empty while the step is not current.
    [[nodiscard]] std::string customInstallPathLabelText() const;
    [[nodiscard]] std::string customInstallBrowseButtonText() const;
    [[nodiscard]] std::string customInstallButtonText() const;
    [[nodiscard]] std::string customInstallCheckBoxText() const;
    [[nodiscard]] std::string customInstallHostsExplanationText() const;

  private:
    void bindControls();

    [[nodiscard]] bool isHostListCurrent() const { return currentView_ == view_; }
    void showHostList();
    void startWithCustomScreen();
    void showCustomScreen();
    [[nodiscard]] bool loadCustomScreen();

    void addCustomHost();
    void selectCustomHostAgain();
    /// The custom host as its own type; null if there is none.
    [[nodiscard]] UnknownHostModel* customFolderHost() const;
    void finishCustomHost(UnknownHostModel& host);
    [[nodiscard]] FolderRequest folderRequest() const;

    void willChangeEnableForward();
    void didChangeEnableForward();

    WindowPlatform& platform_;
    // Kept as long as the step, so that the remembered folder reaches the disk when the
    // application ends.
    BundleUserDefaults defaults_;

    bool enableForward_ = true;
    bool enableBackward_ = true;
    std::shared_ptr<HostsModel> model_;
    MainController* mainController_ = nullptr;
    std::shared_ptr<View> view_;
    std::shared_ptr<View> currentView_;
    std::shared_ptr<View> customInstallView_;
    // Its selection would name the host to take scripts and panels over from; it has no rows.
    std::shared_ptr<ListSelection> scriptsOrPanelsArrayController_;
    bool installScriptsAndPanelsChosen_ = false;
    bool installPluginForCustomInstall_ = true;
    // There is no control for it.
    bool installPlugin64ForCustomInstall_ = false;
    std::optional<HostModel> customHost_;

    std::unique_ptr<Interface> customInstall_;
    Subscription ownAnnouncements_;
};

}  // namespace installer

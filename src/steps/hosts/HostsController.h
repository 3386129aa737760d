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
/// custom install, where the user picks any folder to receive the plug-in. While the second one is
/// in use, that folder is a host of its own in the list, and the only selected one. Announces
/// changes of its own properties; those of "enableForward" on the main controller. Main thread
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
    /// Settles what is installed into the selected custom folder, and remembers the folder for the
    /// next run.
    void didProceed(std::int32_t direction) override;
    /// Shows the custom install at once when there is nothing else to choose. Moves on to the next
    /// step when there is nothing to choose at all, whatever the direction.
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;
    void buttonPressed(const void* sender) override;
    /// Consumes the press on the custom install, which it leaves.
    void overrideBackButton(const void* sender, bool& overridden) override;

    /// Makes the custom folder a host, the only selected one, and shows its screen. Without a
    /// usable interface description the screen stays, while the host is there all the same.
    void goToCustomScreen();
    /// Takes the custom folder's host away, selects all others and shows the list again.
    void undoCustomScreen();

    /// Whether a press of a wizard's button in that direction changes the screen, not the step.
    [[nodiscard]] bool willBranch(std::int32_t direction) const;
    /// Shows the other one of the two screens, whatever the direction.
    void proceedInBranch(std::int32_t direction);

    /// Lets the user pick the custom folder.
    void browseButtonPressed(const void* sender);
    /// Whether the panel for that shows the item: folders that are no packages, and links to them.
    [[nodiscard]] bool panelShouldShowFilename(const std::string& path) const;

    /// To be called when the user has ticked or unticked a host. That ends the custom install and
    /// forbids it from then on.
    void checkboxClicked(const void* sender);

    /// The screen that is shown, or was shown last; null before the first entry.
    [[nodiscard]] std::shared_ptr<View> currentView() const { return currentView_; }

    /// The hosts whose scripts and panels could be taken over: none.
    [[nodiscard]] std::vector<HostModel> scriptsOrPanelsHosts() const;
    /// Always false. The name is misspelt in the interface descriptions, too.
    [[nodiscard]] bool scriptsOrPanelsHostsExsist() const { return false; }
    /// The folder that receives the plug-in; empty when it is not chosen or not to be installed.
    [[nodiscard]] std::string customPath() const;

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
    /// The custom host as what it is; null when there is none.
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

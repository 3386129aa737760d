#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/FailureReport.h"
#include "app/MainWindow.h"
#include "app/StepRegistry.h"
#include "foundation/observers/Subscription.h"
#include "foundation/text/StyledText.h"
#include "wizard/BoundObject.h"
#include "wizard/MainController.h"

namespace installer {

class ApertureRunController;
class ApertureRunModel;
class HostsController;
class HostsModel;
class InstallFilesController;
class InstallFilesModel;
class InstallStateController;
class Interface;
class LicenseController;
class LicenseModel;
class RegisterModel;
class RunningHostViewController;
class RunningHostViewModel;
class SetupViewModel;
struct Notification;
struct WindowPlatform;

/// The main window's controller: owns every step, swaps them as the state of the wizard changes,
/// and answers the window's properties and actions by name.
///
/// What it announces itself, and what the steps announce on it, is heard by its observers as an
/// `Observable`. The window, as an observer of the properties, hears these names too, those that
/// the steps' models announce, and, when the step has changed, the names of properties that follow
/// from it and that nobody announces.
class SetupController : public MainController, public BoundObject {
  public:
    /// Makes the steps; the search for hosts blocks as `HostsModel` does. `platform` outlives this
    /// object.
    explicit SetupController(WindowPlatform& platform);
    ~SetupController() override;

    /// Takes the window that was made from its description with this object as the owner: enters
    /// the first step and shows the window. Called once.
    void awakeFromNib(std::unique_ptr<Interface> interface);

    // The steps by their numbers; null for what a number does not have.
    void addStep(const std::shared_ptr<View>& view,
                 const std::shared_ptr<StepController>& withController,
                 const std::shared_ptr<StepModel>& withModel, std::int32_t forStep);
    [[nodiscard]] std::shared_ptr<View> getViewForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepController> getControllerForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepModel> getModelForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepIndicator> getIndicatorForStep(std::int32_t step) const;

    // Navigation.
    /// Goes on from the current step; a step that asks for it must be the current one.
    void nextView(const void* sender) override;
    /// A step with an extra button may consume the press.
    void previousView(const void* sender);
    /// The current step's extra button.
    void subViewButtonPress(const void* sender);
    /// Leaves the old step and enters the new one. A step may move on while it is entered: the
    /// inner change is then over before the outer one is.
    void stateDidChange(const Notification& notification);

    // The current step's answers; false in a state without a step.
    [[nodiscard]] bool enableForward() const;
    [[nodiscard]] bool enableBackward() const;

    [[nodiscard]] bool copyInProgress() const;
    [[nodiscard]] bool successfulInstall() const override;
    [[nodiscard]] std::vector<HostModel> foundHosts() const override;
    /// Empty when one of the hosts cannot be asked.
    [[nodiscard]] std::vector<HostModel> selectedHosts() const override;
    void customHostAdded(const HostModel& host) override;
    void customHostRemoved(const HostModel& host) override;

    // Texts of the current step and of the bundle.
    [[nodiscard]] std::string mainLabelText() const;
    [[nodiscard]] PlainOrStyledText informativeText() const;
    [[nodiscard]] StyledText licenseText() const;
    [[nodiscard]] StyledText registerText() const;
    [[nodiscard]] const std::string& goForwardText() const { return goForwardText_; }
    [[nodiscard]] const std::string& goBackwardsText() const { return goBackwardsText_; }
    void setGoForwardText(const std::string& text);
    void setGoBackwardsText(const std::string& text);

    // Options. Only the last one is remembered for the next run, and setting it writes it at once.
    // Setting one announces nothing.
    [[nodiscard]] bool isCustomInstallAllowed() const override { return customInstallAllowed_; }
    void setIsCustomInstallAllowed(bool allowed) override;
    [[nodiscard]] bool isCustomInstallChosen() const override { return customInstallChosen_; }
    void setIsCustomInstallChosen(bool chosen) override { customInstallChosen_ = chosen; }
    [[nodiscard]] bool canConfigurePrismorExternalEditors() const {
        return configurePrismorExternalEditorsAllowed_;
    }
    void setCanConfigurePrismorExternalEditors(bool can) {
        configurePrismorExternalEditorsAllowed_ = can;
    }
    [[nodiscard]] bool shouldConfigurePrismorExternalEditors() const override {
        return configurePrismorExternalEditorsShould_;
    }
    void setShouldConfigurePrismorExternalEditors(bool should) {
        configurePrismorExternalEditorsShould_ = should;
    }
    [[nodiscard]] bool customInstallRecommended() const override {
        return isCustomInstallRecommended_;
    }
    void setCustomInstallRecommended(bool recommended) {
        isCustomInstallRecommended_ = recommended;
    }
    [[nodiscard]] bool launchHelpURL() const { return launchHelpURL_; }
    void setLaunchHelpURL(bool launch);

    // The menus.
    void customInstallMenu(const void* sender);
    void showAbout();
    void hideWindow();
    /// Closes the window, but not in the middle of an installation.
    void quit();

    /// No text that this object guards can be edited; Return in it acts as the forward button.
    [[nodiscard]] bool shouldChangeText(std::string_view replacement) override;

  private:
    void observeStateAndAnnouncements();
    void registerSteps();
    void announce(const char* property);
    void swapSteps(std::int32_t oldState, std::int32_t newState);
    void endWizard(std::int32_t state);
    void refreshWhatNobodyAnnounces();

    [[nodiscard]] std::shared_ptr<StepController> currentController() const;
    [[nodiscard]] std::shared_ptr<StepModel> currentModel() const;
    void checkHost(std::size_t row, bool checked);

    // What the description of the main window can name.
    void bindTexts();
    void bindStates();
    void bindOptions();
    void bindPages();
    void bindFailureReport();
    void bindActions();
    [[nodiscard]] Image backgroundImage() const;
    [[nodiscard]] std::string backgroundImageName() const;
    [[nodiscard]] bool installationFailed() const;
    [[nodiscard]] PropertyValue pageText() const;
    [[nodiscard]] std::string outcomeText() const;
    [[nodiscard]] bool allHostsSelected() const;
    void selectAllHosts(bool select);
    void refreshWhatFollowsFrom(std::string_view property);

    WindowPlatform& platform_;
    MainWindow window_;
    std::shared_ptr<InstallStateController> stateController_;
    std::unique_ptr<SetupViewModel> viewModel_;
    StepRegistry steps_;

    std::shared_ptr<LicenseModel> licenseModel_;
    std::shared_ptr<LicenseController> licenseController_;
    std::shared_ptr<InstallFilesModel> installFilesModel_;
    std::shared_ptr<InstallFilesController> installFilesController_;
    std::shared_ptr<HostsModel> hostsModel_;
    std::shared_ptr<HostsController> hostsController_;
    std::shared_ptr<RunningHostViewModel> hostsRunningModel_;
    std::shared_ptr<RunningHostViewController> hostsRunningController_;
    std::shared_ptr<RegisterModel> registerModel_;
    // Kept at hand: no step number leads to the launch of Aperture's helper.
    std::shared_ptr<ApertureRunModel> apertureRunModel_;
    std::shared_ptr<ApertureRunController> apertureRunController_;
    FailureReport failureReport_;

    std::string goForwardText_;
    std::string goBackwardsText_;
    bool customInstallAllowed_ = false;
    bool customInstallChosen_ = false;
    bool configurePrismorExternalEditorsAllowed_ = false;
    bool configurePrismorExternalEditorsShould_ = false;
    bool isCustomInstallRecommended_ = true;
    bool launchHelpURL_ = false;

    // The last to be made and the first to go: these call this object.
    Subscription stateChanges_;
    Subscription ownAnnouncements_;
    std::map<std::int32_t, Subscription> modelAnnouncements_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace installer

#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/MainWindow.h"
#include "app/StepRegistry.h"
#include "app/texts/FailureReport.h"
#include "app/texts/NeededSpace.h"
#include "foundation/observers/Observable.h"
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
class RegisterController;
class RegisterModel;
class RunningHostViewController;
class RunningHostViewModel;
class SetupViewModel;
struct Notification;
struct WindowPlatform;

/// The main window's controller: owns every step, leaves one and enters the next when the state of
/// the wizard changes, and gives the window its properties and actions by name.
///
/// Changes are announced on this object, by itself and by the steps. A step's model announces its
/// own changes on the model. The window follows both, and the changes of the options: it reads
/// every announced property again.
class SetupController : public MainController, public BoundObject {
  public:
    /// Makes the steps; the search for hosts blocks as `HostsModel` does. `platform` outlives this
    /// object.
    explicit SetupController(WindowPlatform& platform);
    ~SetupController() override;

    /// Takes the interface that was loaded with this object as the owner, enters the first step and
    /// shows the window. Called once.
    void awakeFromNib(std::unique_ptr<Interface> interface);

    // The steps by their numbers. The look-ups give null for what a step does not have.
    void addStep(const std::shared_ptr<View>& view,
                 const std::shared_ptr<StepController>& withController,
                 const std::shared_ptr<StepModel>& withModel, std::int32_t forStep);
    [[nodiscard]] std::shared_ptr<View> getViewForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepController> getControllerForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepModel> getModelForStep(std::int32_t step) const;
    [[nodiscard]] std::shared_ptr<StepIndicator> getIndicatorForStep(std::int32_t step) const;

    // Navigation.
    /// Goes to the next step. No-op if the sender is the controller of a step that is not current.
    void nextView(const void* sender) override;
    /// Goes back, unless the current step consumes the press. Only a step with an extra button is
    /// asked for that.
    void previousView(const void* sender);
    /// Passes the press on to the current step; no-op if the step has no extra button.
    void subViewButtonPress(const void* sender);
    /// Leaves the old step and enters the new one. A step may change the state while it is entered;
    /// the inner change then ends before the outer one.
    void stateDidChange(const Notification& notification);

    // The current step's answers; false in a state without a step.
    [[nodiscard]] bool enableForward() const;
    [[nodiscard]] bool enableBackward() const;

    [[nodiscard]] bool copyInProgress() const;
    [[nodiscard]] bool successfulInstall() const override;
    [[nodiscard]] std::vector<HostModel> foundHosts() const override;
    /// Empty if one of the hosts does not have the property "hostIsSelected".
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

    // Options. Setting one announces nothing on this object; the window reads it again all the
    // same. Only `launchHelpURL` is kept for the next run: setting it hands it to the settings
    // store at once, which writes it to the disk when the application ends.
    [[nodiscard]] bool isCustomInstallAllowed() const override { return customInstallAllowed_; }
    void setIsCustomInstallAllowed(bool allowed) override;
    [[nodiscard]] bool isCustomInstallChosen() const override { return customInstallChosen_; }
    void setIsCustomInstallChosen(bool chosen) override { customInstallChosen_ = chosen; }
    [[nodiscard]] bool canConfigurePrismorExternalEditors() const {
        return configurePrismorExternalEditorsAllowed_;
    }
    void setCanConfigurePrismorExternalEditors(bool can);
    [[nodiscard]] bool shouldConfigurePrismorExternalEditors() const override {
        return configurePrismorExternalEditorsShould_;
    }
    void setShouldConfigurePrismorExternalEditors(bool should);
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
    /// Closes the window as soon as no installation is going on: now, or when it has ended. The
    /// help page does not open.
    void endSoon();

    /// Always false: a guarded text cannot be edited. Return in it acts as the forward button.
    [[nodiscard]] bool shouldChangeText(std::string_view replacement) override;

  private:
    void followChanges();
    /// Nothing can be put into such a host, and its failure would keep all hosts after it out. Its
    /// row says so; whoever ticks it again is warned and obeyed.
    void unselectRefusedHosts();
    void registerSteps();
    void announce(const char* property);
    void swapSteps(std::int32_t oldState, std::int32_t newState);
    void endWizard(std::int32_t state);
    void setOption(const char* property, bool& option, bool value);

    [[nodiscard]] std::shared_ptr<StepController> currentController() const;
    [[nodiscard]] std::shared_ptr<StepModel> currentModel() const;
    void checkHost(std::size_t row, bool checked);

    // What the description of the main window can name.
    void bindTexts();
    void bindStates();
    void bindOptions();
    void bindPages();
    void bindProgress();
    void bindFailureReport();
    void bindActions();
    [[nodiscard]] Image backgroundImage() const;
    [[nodiscard]] std::string backgroundImageName() const;
    [[nodiscard]] bool installationFailed() const;
    [[nodiscard]] PropertyValue pageText() const;
    [[nodiscard]] std::string waitingText() const;
    /// Of the program that is waited for: its own, else that of the host which it belongs to.
    [[nodiscard]] Image runningIcon() const;
    /// What the page of hosts says of the space on the disks.
    [[nodiscard]] std::string spaceNote();
    [[nodiscard]] std::string outcomeText() const;
    [[nodiscard]] std::string pageName() const;
    [[nodiscard]] std::string pageTitle() const;
    [[nodiscard]] std::vector<ListRow> installedPlaces() const;
    /// What the last page says after a success that put the plug-in into no host; else empty.
    [[nodiscard]] std::string noPhotoshopText() const;
    /// Says on the last page, until it is left, that something was copied.
    void confirmCopy();
    void closeIfAsked();
    void pressExtraButton(const void* sender);
    /// Names what the desktop could not open.
    void tellUnopened(const std::string& addressOrPath);
    [[nodiscard]] bool allHostsSelected() const;
    void selectAllHosts(bool select);

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
    std::shared_ptr<RegisterController> registerController_;
    // In reserve: the Aperture launch is registered under no step number.
    std::shared_ptr<ApertureRunModel> apertureRunModel_;
    std::shared_ptr<ApertureRunController> apertureRunController_;
    FailureReport failureReport_;
    NeededSpace neededSpace_;

    std::string goForwardText_;
    std::string goBackwardsText_;
    bool customInstallAllowed_ = false;
    bool customInstallChosen_ = false;
    bool configurePrismorExternalEditorsAllowed_ = false;
    bool configurePrismorExternalEditorsShould_ = false;
    bool isCustomInstallRecommended_ = true;
    bool launchHelpURL_ = false;
    bool isCopied_ = false;
    bool endsSoon_ = false;

    /// Announces the options to the window.
    Observable options_;

    // Destroyed before everything else, since these call this object.
    Subscription stateChanges_;
    Subscription ownAnnouncements_;
    Subscription optionAnnouncements_;
    Subscription runningAnnouncements_;
    Subscription progressAnnouncements_;
    Subscription failedOpenings_;
    std::map<std::int32_t, Subscription> modelAnnouncements_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace installer

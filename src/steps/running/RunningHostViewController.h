#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "foundation/observers/Observable.h"
#include "foundation/observers/Subscription.h"
#include "wizard/StepController.h"

namespace installer {

class HostModel;
class RunningHostViewModel;
struct WindowPlatform;

/// Whether the application of that name is meant by the word; case-sensitive. The word "Photoshop"
/// must begin the name. For any other word, a name that contains "Installer" does not count.
/// Nothing is meant by the empty word.
[[nodiscard]] bool isApplicationOfHost(const std::string& application, const std::string& word);

/// The step before the installation: waits while a selected host, or an application of the payload,
/// is running. Goes to the next step by itself if none is. Main thread only.
class RunningHostViewController : public StepController {
  public:
    /// The platform outlives this object.
    explicit RunningHostViewController(WindowPlatform& platform);

    /// Sets the model whose texts the window shows. Called once.
    void setModel(std::shared_ptr<RunningHostViewModel> model);

    [[nodiscard]] bool enableForward() const override { return !hosts_running_; }
    [[nodiscard]] bool enableBackward() const override { return true; }
    /// Going back is always possible.
    [[nodiscard]] bool canProceed(std::int32_t direction) override;
    void didProceed(std::int32_t direction) override;
    /// Goes to the next step at once if nothing runs, whatever the direction. The model is ignored:
    /// `setModel` gave the one in use.
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;

    /// The word that the name of the host's running application contains.
    [[nodiscard]] static std::string hostAppSearchString(const HostModel& host);
    /// Whether an application runs that the word means (`isApplicationOfHost`).
    [[nodiscard]] bool isHostRunning(const std::string& word) const;
    /// Whether a selected host is running, or an application that the payload has for
    /// /Applications. The model's texts then name the first such application.
    bool checkForRunningHosts();

    /// The name of the application that the last check found; empty if it found none.
    [[nodiscard]] const std::string& runningApplication() const { return runningApplication_; }
    /// Announces "runningApplication".
    [[nodiscard]] Observable& changes() { return changes_; }

    /// Start and stop observing the ends of applications.
    void AddKillNotify();
    void RemoveKillNotify();
    /// Checks again after an application has ended. If nothing runs any more, Continue is enabled;
    /// the step does not go on by itself.
    void appTerminated(const std::string& name);

  private:
    [[nodiscard]] std::optional<std::string> applicationOf(const std::string& word) const;
    [[nodiscard]] bool findApplication(const std::string& word);
    [[nodiscard]] bool checkSelectedHosts();
    [[nodiscard]] bool checkInstalledApplications();
    void nameHost(const std::string& name);
    void setHostIsRunning(bool running);

    WindowPlatform& platform_;
    std::shared_ptr<RunningHostViewModel> model_;
    MainController* mainController_ = nullptr;
    std::shared_ptr<View> view_;
    bool hosts_running_ = false;
    std::string runningApplication_;
    Observable changes_;
    Subscription terminations_;
};

}  // namespace installer

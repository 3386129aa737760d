#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/observers/Subscription.h"
#include "wizard/StepController.h"

namespace installer {

class HostModel;
class RunningHostViewModel;
struct WindowPlatform;

/// The step before the installation: holds the user up while a selected host, or an application
/// that is going to be installed, is running. Passes by itself when none is. Main thread only.
class RunningHostViewController : public StepController {
  public:
    /// The platform outlives this object.
    explicit RunningHostViewController(WindowPlatform& platform);

    /// Connects the model that the step's view shows, once.
    void setModel(std::shared_ptr<RunningHostViewModel> model);

    [[nodiscard]] bool enableForward() const override { return !hosts_running_; }
    [[nodiscard]] bool enableBackward() const override { return true; }
    /// Going back is always possible.
    [[nodiscard]] bool canProceed(std::int32_t direction) override;
    void didProceed(std::int32_t direction) override;
    /// Goes on to the next step at once when nothing runs, whatever the direction. The model is
    /// not taken from here: it was connected together with the view.
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;

    /// What the names of the host's running applications have in common.
    [[nodiscard]] static std::string hostAppSearchString(const HostModel& host);
    /// Whether an application runs whose name holds the word, letter case counts. "Photoshop" must
    /// begin the name; with any other word, installers do not count. The empty word is in no name.
    [[nodiscard]] bool isHostRunning(const std::string& word) const;
    /// Whether one of the selected hosts, or of the applications in the payload for the machine's
    /// applications folder, is running. Names the first one in the texts.
    bool checkForRunningHosts();

    /// Starts and stops listening for the ends of applications.
    void AddKillNotify();
    void RemoveKillNotify();
    /// An application has ended: checks again. When nothing runs any more, the user may go on, but
    /// the step does not do so by itself.
    void appTerminated(const std::string& name);

  private:
    [[nodiscard]] bool checkSelectedHosts();
    [[nodiscard]] bool checkInstalledApplications();
    void nameHost(const std::string& name);
    void setHostIsRunning(bool running);

    WindowPlatform& platform_;
    std::shared_ptr<RunningHostViewModel> model_;
    MainController* mainController_ = nullptr;
    std::shared_ptr<View> view_;
    bool hosts_running_ = false;
    Subscription terminations_;
};

}  // namespace installer

#pragma once

#include <cstdint>
#include <memory>

#include "wizard/StepController.h"

namespace installer {

class ApertureRunModel;
struct WindowPlatform;

/// A step to follow an installation into Aperture. When the user leaves it, it launches the
/// installed stand-alone application without a window, so that this sets itself up, and ends it
/// again. In reserve: the wizard registers this step under no number.
class ApertureRunController : public StepController {
  public:
    /// The platform outlives this object.
    explicit ApertureRunController(WindowPlatform& platform) : platform_(platform) {}

    [[nodiscard]] bool enableForward() const override { return enableForward_; }
    [[nodiscard]] bool enableBackward() const override { return enableBackward_; }
    [[nodiscard]] bool canProceed(std::int32_t /*direction*/) override { return true; }
    /// Launches the application, whatever the direction, and blocks for two seconds if that worked.
    void didProceed(std::int32_t direction) override;
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;

  private:
    void runStandAloneApplicationOnce();

    WindowPlatform& platform_;
    bool enableForward_ = true;
    bool enableBackward_ = true;
    MainController* mainController_ = nullptr;
    std::shared_ptr<ApertureRunModel> model_;
    std::shared_ptr<View> view_;
};

}  // namespace installer

#pragma once

#include <cstdint>
#include <memory>

#include "wizard/StepController.h"

namespace installer {

class ApertureRunModel;
struct WindowPlatform;

/// A step for after an installation into Aperture: when the user goes on, the stand-alone
/// application that was installed is started once without a window, so that it sets itself up, and
/// ended again. The wizard has no place for it at present.
class ApertureRunController : public StepController {
  public:
    /// The platform outlives this object.
    explicit ApertureRunController(WindowPlatform& platform) : platform_(platform) {}

    [[nodiscard]] bool enableForward() const override { return enableForward_; }
    [[nodiscard]] bool enableBackward() const override { return enableBackward_; }
    [[nodiscard]] bool canProceed(std::int32_t /*direction*/) override { return true; }
    /// Blocks for two seconds when the application could be started, in either direction.
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

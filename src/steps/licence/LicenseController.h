#pragma once

#include <cstdint>
#include <memory>

#include "wizard/StepController.h"

namespace installer {

class LicenseModel;
struct Alert;
struct Platform;

/// The licence-agreement step: going on needs the user's agreement, which is asked for once.
class LicenseController : public StepController {
  public:
    /// `platform` outlives this object.
    explicit LicenseController(Platform& platform) : platform_(platform) {}

    [[nodiscard]] bool enableForward() const override { return true; }
    [[nodiscard]] bool enableBackward() const override { return true; }

    /// Going back is always possible. Going forward asks the user and waits, unless they have
    /// agreed before.
    [[nodiscard]] bool canProceed(std::int32_t direction) override;
    void didProceed(std::int32_t direction) override;
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;

    /// The code of the alert's first button; each further button's is one more.
    static constexpr std::int32_t firstButtonReturn = 1000;

    /// Takes the answer to the alert: the first button means that the user agrees.
    void sheetDidEnd(const Alert& alert, std::int32_t returnCode, const void* contextInfo);

  private:
    Platform& platform_;
    std::shared_ptr<LicenseModel> model_;
    std::shared_ptr<View> view_;
    MainController* mainController_ = nullptr;
    bool agreed_ = false;
    bool isAsking_ = false;
};

}  // namespace installer

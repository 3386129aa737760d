#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "wizard/StepController.h"

namespace installer {

class RegisterModel;
struct WindowPlatform;

/// The completion step, which is the last page: shows how the installation went, and offers to open
/// the maker's page.
class RegisterController : public StepController, public HasExtraButton {
  public:
    /// `platform` outlives this object.
    explicit RegisterController(WindowPlatform& platform) : platform_(platform) {}

    [[nodiscard]] bool enableForward() const override { return true; }
    /// Always false: the back button is disabled. `canProceed` would allow the way back, which
    /// `InstallStateController` leads to the host selection.
    [[nodiscard]] bool enableBackward() const override { return false; }
    [[nodiscard]] bool canProceed(std::int32_t direction) override;
    void didProceed(std::int32_t direction) override;
    /// Chooses the text and the picture anew at every entry.
    void didEnterWithModel(std::shared_ptr<StepModel> model, std::shared_ptr<View> view,
                           MainController* mainController, std::int32_t direction) override;

    /// Opens the maker's page in the browser; the step stays.
    void buttonPressed(const void* sender) override;

    /// The address that the last press of the button could not open; empty if there is none.
    [[nodiscard]] const std::string& unopenedAddress() const { return unopenedAddress_; }

  private:
    void showOutcome();
    void chooseText();

    WindowPlatform& platform_;
    std::shared_ptr<RegisterModel> model_;
    std::shared_ptr<View> view_;
    MainController* mainController_ = nullptr;
    std::string unopenedAddress_;
};

}  // namespace installer

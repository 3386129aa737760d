#pragma once

#include <optional>
#include <string>

#include "foundation/text/StyledText.h"
#include "wizard/StepModel.h"

namespace installer {

struct Platform;

/// What the last page says: that the installation succeeded, or that it failed. Which of the two
/// is chosen when the step is entered; until then the page says neither.
class RegisterModel : public StepModel, public HasBackgroundImage {
  public:
    /// Reads the texts. `platform` outlives this object.
    explicit RegisterModel(Platform& platform);

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    [[nodiscard]] PlainOrStyledText informativeText() const override;
    /// The error image after a failure, else the check mark.
    [[nodiscard]] Image backgroundImage() const override;

    [[nodiscard]] bool indicateFailure() const { return indicateFailure_; }

    // Neither announces anything: whoever enters the step does.
    void useFailText();
    void useRegisterText();

  private:
    Platform& platform_;
    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    PlainOrStyledText informativeText_;
    StyledText registerMessage_;
    std::string failMessage_;
    bool indicateFailure_ = false;
};

}  // namespace installer

#pragma once

#include <optional>
#include <string>

#include "foundation/text/StyledText.h"
#include "wizard/StepModel.h"

namespace installer {

struct Platform;

/// The texts and the picture of the last page, for success or for failure. The controller chooses
/// one of the two at each entry; before the first one the explanation is empty.
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

    // Neither announces anything: the caller does.
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

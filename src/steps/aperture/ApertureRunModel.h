#pragma once

#include <optional>
#include <string>

#include "wizard/StepModel.h"

namespace installer {

struct WindowPlatform;

/// The texts of the Aperture launch step, and Aperture's icon.
class ApertureRunModel : public StepModel, public HasBackgroundImage {
  public:
    explicit ApertureRunModel(WindowPlatform& platform);

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    [[nodiscard]] PlainOrStyledText informativeText() const override;
    [[nodiscard]] Image backgroundImage() const override;

  private:
    WindowPlatform& platform_;
    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    StyledText informativeText_;
};

}  // namespace installer

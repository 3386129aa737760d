#pragma once

#include <optional>
#include <string>

#include "wizard/StepModel.h"

namespace installer {

struct Platform;

/// The licence terms and the texts of the licence-agreement step.
class LicenseModel : public StepModel {
  public:
    explicit LicenseModel(Platform& platform);

    /// The whole terms; nullopt if the bundle has none or they are not UTF-8.
    [[nodiscard]] const std::optional<std::string>& licenseText() const { return licenseText_; }

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    [[nodiscard]] PlainOrStyledText informativeText() const override;

  private:
    std::optional<std::string> licenseText_;
    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
};

}  // namespace installer

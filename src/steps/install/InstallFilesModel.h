#pragma once

#include <optional>
#include <string>

#include "wizard/StepModel.h"

namespace installer {

struct Platform;

/// The texts of the install step.
class InstallFilesModel : public StepModel {
  public:
    /// Looks the texts up. A title that cannot be made is logged and stays empty.
    explicit InstallFilesModel(Platform& platform);

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    /// Says what is being installed while a run is going on.
    [[nodiscard]] PlainOrStyledText informativeText() const override;
    void setInformativeText(const std::string& text);

  private:
    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    std::string informativeText_;
};

}  // namespace installer

#pragma once

#include <optional>
#include <string>

#include "wizard/StepModel.h"

namespace installer {

struct WindowPlatform;

/// The texts of the running-host check: one set while a host runs, another one when none does.
class RunningHostViewModel : public StepModel {
  public:
    explicit RunningHostViewModel(WindowPlatform& platform);

    [[nodiscard]] bool hostIsRunning() const { return host_running_; }
    /// Chooses the texts.
    void setHostIsRunning(bool running);
    /// Fills the name of what runs and the product's name into the two templates. The text of a
    /// template without a placeholder stays as it was.
    void setHostName(const std::string& name);

    [[nodiscard]] std::optional<std::string> mainLabelText() const override;
    [[nodiscard]] std::string stepIndicatorLabelText() const override;
    [[nodiscard]] PlainOrStyledText informativeText() const override;

  private:
    WindowPlatform& platform_;
    bool host_running_ = false;
    std::string mainLabelText_;
    std::string stepIndicatorLabelText_;
    StyledText runningText_;
    StyledText notRunningText_;
    // The templates of the two texts; empty if they could not be read.
    StyledText runningFormatString_;
    StyledText notRunningFormatString_;
    std::string thank_you_;
};

}  // namespace installer
